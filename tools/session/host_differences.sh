# What is not the same on a later host as on that of 2012. tests/scenarios/host_GENERATION.txt has it,
# for that generation and those after it, a line each:
#     without FILE        this scenario is not played there
#     differs FILE WHY    it is played, and its trace must differ
#     apart FILE          it is played, its expectations tell of lines that are left out here, and the
#                         rest of its trace is the same
#     line REGEX          such lines of traces are left out on both sides
#     block REGEX         what begins with such a line and ends with the next `out` is, too

# host_differences ABI: those lines, for msvc-GENERATION; for 2012 there are none.
host_differences() {
    local file generation
    for file in "${BASH_SOURCE[0]%/*}"/../../tests/scenarios/host_*.txt; do
        generation=${file##*host_}
        if [[ $1 == msvc-* && ${1#msvc-} -ge ${generation%.txt} ]]; then cat "$file"; fi
    done
}

# files_of WORD[|WORD...]: the scenarios of the lines that begin with such a word, out of standard input.
files_of() {
    sed -nE "s/^($1) ([^ ]*).*/\2/p"
}
