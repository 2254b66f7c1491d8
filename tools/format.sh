#!/bin/bash
# usage: format.sh [--check]
# Formats the C and C++ sources, or with --check lists those that are not formatted.
set -u
cd "$(dirname "$0")/.." || exit 1

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

unformatted=$(list_sources | while IFS= read -r -d '' file; do
    clang-format-19 --dry-run -Werror "$file" >/dev/null 2>&1 || printf '%s\n' "${file#./}"
done)
if [ -n "$unformatted" ]; then
    echo "not formatted (./dev format does it):"
    printf '%s\n' "$unformatted"
    exit 1
fi
echo "all sources are formatted"
