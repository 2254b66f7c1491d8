# shellcheck shell=bash disable=SC2154  # root is the caller's
# To be sourced. What is written after ./dev, held against the table of verbs (verbs.txt).

verbs_table=$root/tools/dev/verbs.txt
labels_table=$root/tests/labels.txt
# Generations of the host beside the one that the file that ships is for; LATER in the tables.
later_hosts=$(awk '$1 == "generation" { $1 = $2 = ""; sub(/^ +/, ""); print }' "$root/sdk/generations.txt")

# refuse MESSAGE: what was written makes no sense, and nothing has been done.
refuse() {
    echo "dev: $1" >&2
    exit 2
}

# Each verb and what it does.
list_verbs() {
    awk '$2 == "." && !seen[$1]++ { printf "%s", $1; $1 = $2 = $3 = $4 = ""; print }' "$verbs_table"
}

# rows_of VERB: "WORD VALUE FOR HELP", a line each.
rows_of() {
    awk -v verb="$1" '("," $1 ",") ~ ("," verb ",") { sub(/^[^ ]+ +/, ""); print }' "$verbs_table" |
        sed "s/|msvc-LATER/|msvc-${later_hosts// /|msvc-}/; s/|LATER/|${later_hosts// /|}/"
}

# choices_of VERB: what its words can be.
choices_of() {
    rows_of "$1" | awk '/^\[/ { gsub(/\|/, " ", $2); print $2 }'
}

list_labels() {
    local line year
    while read -r line; do
        case $line in
            '#'*) ;;
            *LATER*) for year in $later_hosts; do echo "${line//LATER/$year}"; done ;;
            *) echo "$line" ;;
        esac
    done <"$labels_table"
}

print_overview() {
    local verb help
    printf 'usage: ./dev VERB [OPTION...]\n\n'
    while read -r verb help; do printf '  %-12s%s\n' "$verb" "$help"; done < <(list_verbs)
    printf '\n./dev help VERB lists what a verb takes.\n'
}

print_help() {
    local word value help line="usage: ./dev $1" text='' list='' rows
    rows=$(rows_of "$1")
    if [[ $'\n'$rows == *$'\n'-* ]]; then line+=' [OPTION...]'; fi
    while read -r word value _ help; do
        case $word in
            .)
                text+=$help$'\n'
                continue
                ;;
            *=) word+=$value ;;
            -*) if [ "$value" != - ]; then word+=" $value"; fi ;;
            *)
                line+=" $word"
                if [[ $value == *'|'* ]]; then help+=": ${value//|/, }"; fi
                ;;
        esac
        printf -v word '  %-29s %s\n' "$word" "$help"
        list+=$word
    done <<<"$rows"
    printf '%s\n\n%s' "$line" "$text${list:+$'\n'$list}"
    if [[ $rows == *' LABEL '* ]]; then
        printf '\nlabels:\n'
        list_labels | sed 's/^/  /'
    fi
}

# read_arguments VERB ARGUMENT...: prints help, or refuses what the table does not have. What it has
# goes to `given` (option -> its last value), `words` (what is no option) and `passed` (what the
# program behind the verb gets, --name=value as two words).
read_arguments() {
    local verb=$1 argument rows name value reader attached taken word_name word_value word_reader
    declare -gA given=()
    words=() passed=()
    rows=$(rows_of "$verb")
    if [ -z "$rows" ]; then refuse "there is no verb '$verb', ./dev help lists them"; fi
    shift
    for argument in "$@"; do
        if [[ $argument == --help || $argument == -h ]]; then
            print_help "$verb"
            exit 0
        fi
    done
    read -r word_name word_value word_reader _ < <(grep '^[A-Z[]' <<<"$rows")
    while [ $# -gt 0 ]; do
        name=$1 attached=
        shift
        if [[ $name != -?* ]]; then
            if [ -z "$word_name" ] || [[ $word_name != *...* && ${#words[@]} -gt 0 ]]; then
                refuse "'$name' is too much, see ./dev help $verb"
            fi
            check_value "$word_name" "$name" "$word_value"
            words+=("$name")
            if [ "$word_reader" = pass ]; then passed+=("$name"); fi
            continue
        fi
        # -j4 and --seed=4 are two words each.
        if [[ $name =~ ^(-[a-z])([0-9]+)$ || $name =~ ^(--[^=]+)=(.*)$ ]]; then
            name=${BASH_REMATCH[1]} attached=yes
            set -- "${BASH_REMATCH[2]}" "$@"
        fi
        if [ -n "$attached" ] && find_row "$name="; then
            name+='='
        elif ! find_row "$name"; then
            refuse "$verb has no option $name, see ./dev help $verb"
        fi
        taken=("$name")
        if [ "$value" = - ]; then
            if [ -n "$attached" ]; then refuse "$name takes no value"; fi
            given[$name]=yes
        else
            if [ $# -eq 0 ]; then refuse "a value is missing after $name"; fi
            check_value "$name" "$1" "$value"
            given[$name]=$1
            if [[ $name == *= ]]; then taken=("$name$1"); else taken+=("$1"); fi
            shift
        fi
        if [ "$reader" = pass ]; then passed+=("${taken[@]}"); fi
    done
    if [[ $word_name == [A-Z]* && ${#words[@]} -eq 0 && -z ${given[--files-from]:-} ]]; then
        refuse "$verb needs $word_name, see ./dev help $verb"
    fi
}

# find_row WORD: sets `value` and `reader` of read_arguments to those of the word's row.
find_row() {
    local word
    while read -r word value reader _; do
        if [ "$word" = "$1" ]; then return 0; fi
    done <<<"$rows"
    return 1
}

# check_value NAME TEXT KIND: refuses a text that is not of the kind.
check_value() {
    local name=${1//[][=]/} text=$2 kind=$3 looks=.+ says='is something' folder most parts part
    name=${name%...}
    case $kind in
        TEXT | NEW | FILE | SOURCE | VERB | LABEL) ;;
        NUMBER) looks='[0-9]{1,18}|0x[0-9a-fA-F]{1,15}' says='is a number' ;;
        WxH) looks='[0-9]{3,5}x[0-9]{3,5}' says='looks like 1280x1024' ;;
        SEEDS) looks='[0-9]+(-[0-9]+)?(,[0-9]+(-[0-9]+)?)*' says='looks like 3, 1-5 or 1,4' ;;
        REPEAT)
            looks='(until-fail|until-pass|after-timeout):[1-9][0-9]*' says='looks like until-fail:5'
            ;;
        *..) looks='[0-9]{1,18}' says="is a number from ${kind%..}" ;;
        *..*) looks='[0-9]{1,18}' says="is a number from ${kind/../ to }" ;;
        *,*) looks="(${kind//,/|})(,(${kind//,/|}))*" says="can be some of ${kind//,/, }" ;;
        *) looks=$kind says="can be ${kind//|/, }" ;;
    esac
    if [[ ! $text =~ ^($looks)$ ]]; then refuse "$name is '$text', it $says"; fi
    case $kind in
        FILE) [[ -f $text && -r $text ]] || refuse "there is no file '$text'" ;;
        NEW)
            folder=$(dirname -- "$text")
            [ -d "$folder" ] || refuse "$name is '$text', there is no folder $folder"
            ;;
        SOURCE)
            [[ -f $root/$text && $text == *.cpp ]] ||
                refuse "$name is '$text', that is no source of the plug-in"
            ;;
        VERB) [ -n "$(rows_of "$text")" ] || refuse "there is no verb '$text', ./dev help lists them" ;;
        LABEL)
            # It is a regular expression; of plain alternatives each has to be there.
            parts=("$text")
            if [[ $text =~ ^[a-z|-]+$ ]]; then IFS='|' read -ra parts <<<"$text"; fi
            for part in "${parts[@]}"; do
                list_labels | sed 's/ .*//' | grep -qE -- "$part" 2>/dev/null ||
                    refuse "no test has a label '$part', ./dev help test lists them"
            done
            ;;
        *..*)
            most=${kind##*..}
            ((10#$text >= ${kind%%..*} && 10#$text <= ${most:-10#$text})) ||
                refuse "$name is '$text', it $says"
            ;;
    esac
}
