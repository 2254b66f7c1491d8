#!/bin/bash
# usage: format_sources.sh [--check]
# Formats the C and C++ sources, or with --check lists those that are not formatted.
set -u
cd "$(dirname "$0")/../.." || exit 1

check=
case ${1:-} in
    '') ;;
    --check) check=yes ;;
    *) echo "format: there is no option '$1', only --check" >&2; exit 2 ;;
esac

list_sources() {
    # Sources that are not yet committed count too; what lies in build/ does not.
    find . -path ./build -prune -o -path ./.git -prune -o \
        \( -name '*.cpp' -o -name '*.h' -o -name '*.c' \) -type f -print0
}

if [ -z "$check" ]; then
    list_sources | xargs -0 -r clang-format-19 -i
    exit
fi

messages=$(mktemp "${TMPDIR:-/tmp}/karvel-format.XXXXXX")
trap 'rm -f "$messages"' EXIT
status=0
list_sources | xargs -0 -r -n 40 -P "$(nproc)" clang-format-19 --dry-run -Werror \
    >"$messages" 2>&1 || status=1
unformatted=$(sed -n 's|^\(\./\)\?\([^ :]*\):[0-9]*:[0-9]*: error: .*|\2|p' "$messages" | sort -u)
if [ -n "$unformatted" ]; then
    echo "not formatted (./dev format does it):"
    printf '%s\n' "$unformatted"
    exit 1
fi
if [ "$status" -ne 0 ]; then
    cat "$messages" >&2
    exit 1
fi
echo "all sources are formatted"
