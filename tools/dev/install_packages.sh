# shellcheck shell=bash disable=SC2154  # build is the caller's
# To be sourced. The packages that the verbs need.

declare -A packages=(
    [build]="cmake ninja-build g++ g++-mingw-w64-x86-64 clang-19 lld-19 llvm-19 googletest libgmock-dev python3 python3-pil nlohmann-json3-dev libcli11-dev libstb-dev librsvg2-bin fontconfig fonts-dejavu-core"
    [wine]="wine wine64 fonts-wine util-linux"
    [display]="xvfb imagemagick xdotool"
    [archive]="python3-markdown weasyprint python3-pefile libxml2-utils"
    [coverage]="gcovr"
    [fuzzers]="libclang-rt-19-dev"
    [lint]="clang-tidy-19 clang-format-19 cppcheck"
)

# need_packages SET...: installs those that are missing.
need_packages() {
    local set package wanted=() installed missing=() as_root=()
    for set in "$@"; do read -ra wanted <<<"${wanted[*]} ${packages[$set]}"; done
    installed=$(dpkg-query -W -f '/${Package} ${db:Status-Status}/' "${wanted[@]}" 2>/dev/null)
    for package in "${wanted[@]}"; do
        if [[ $installed != *"/$package installed/"* ]]; then missing+=("$package"); fi
    done
    if [ ${#missing[@]} -eq 0 ]; then return 0; fi
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null ||
            fail "packages are missing; as root: apt-get install ${missing[*]}"
        as_root=(sudo)
    fi
    echo "dev: installing ${missing[*]}" >&2
    mkdir -p "$build"
    local log=$build/packages.log
    # Half a package is worse than a process that goes on: see end_what_belongs_to.
    as_root+=(env -u KARVEL_CALL KARVEL_INSTALLS="$KARVEL_CALL" DEBIAN_FRONTEND=noninteractive)
    local install=("${as_root[@]}" apt-get -o DPkg::Lock::Timeout=300
        install -y --no-install-recommends "${missing[@]}")
    # An installation that was broken off is ended first, and the package lists are only fetched, when
    # it does not do without.
    if ! "${install[@]}" >"$log" 2>&1 </dev/null; then
        "${as_root[@]}" dpkg --configure -a >>"$log" 2>&1 </dev/null
        "${as_root[@]}" apt-get update >>"$log" 2>&1 </dev/null
        if ! "${install[@]}" >>"$log" 2>&1 </dev/null; then
            tail -n 20 "$log" >&2
            fail "the packages cannot be installed, see $log"
        fi
    fi
}
