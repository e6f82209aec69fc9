# shellcheck shell=bash
# What a script understands: tables of its own, read in one way for all scripts, and in the same words
# as the programs do (tools/options/commandline.h). Sourced by common.sh.
#
# A script fills the tables, calls `understand "$@"`, and finds what it was told in `mode`, `operands`
# and `given`. A MODE is "main", or an option that names what else the script does ("--at").

declare -A operands_of=() # [MODE]="KIND...": what stands beside the options. "?" behind the last one: it
                          # may be missing; "+": there may be several; "*": both
declare -A options_of=()  # [MODE]="OPTION...": those that mean something to it; [every]: to each
declare -A value_of=()    # [OPTION]="KIND EXAMPLE" of its value; "" for an option without
declare -A example_of=()  # [MODE]="WORD...": operands that would be right

# A KIND may be followed by bounds: "count:1:8". What it looks like, and how refusals call it:
declare -A look_of=(
    [film]='.+\.(mp4|mov|mkv)' [png]='.+\.png' [ppm]='.+\.ppm' [html]='.+\.html' [piece]='.+' [file]='.+'
    [folder]='.+' [fill]='.+' [path]='.+'
    [seconds]='[0-9]+\.?[0-9]*|\.[0-9]+' [time]='[0-9]+\.?[0-9]*|\.[0-9]+' [count]='[0-9]+'
    [rate]='[0-9]+(\.[0-9]{0,6}|/0*[1-9][0-9]*)?'
)
declare -A name_of=(
    [film]="a .mp4, .mov or .mkv file" [png]="a .png file" [ppm]="a .ppm file"
    [html]="a .html file" [piece]="the film of a piece" [file]="a file"
    [folder]="a folder" [fill]="a folder" [path]="a folder"
    [seconds]="a number of seconds" [time]="a time" [count]="a whole number"
    [rate]="a number of frames a second"
)

mode=main
operands=()         # files and folders as absolute paths
kinds_given=()      # of each of them
declare -A given=() # [OPTION]=VALUE, of several the last; "" for an option without

# has OPTION
has() { [ -n "${given[$1]+given}" ]; }

# value OPTION OTHERWISE: its value, or another without it.
value() { printf '%s' "${given[$1]-$2}"; }

# need_place KIND PATH: that the file or folder can be there, before anything is built for it.
need_place() {
    case "$1" in
        film | png | ppm | html) need_file_to_write "$2" ;;
        piece | file) need_file_to_read "$2" ;;
        folder) need_folder "$2" ;;
        fill) make_folder "$2" ;;
    esac
}

# listed LAST TEXT...: "a, b LAST c"
listed() {
    local last=$1
    local list=
    shift
    while [ $# -gt 0 ]; do
        if [ -n "$list" ]; then
            if [ $# -eq 1 ]; then list+=" $last "; else list+=", "; fi
        fi
        list+=$1
        shift
    done
    printf '%s' "$list"
}

# kind_name KIND: as refusals call it.
kind_name() {
    local kind least most
    IFS=: read -r kind least most <<<"$1"
    printf '%s' "${name_of[$kind]}${least:+ from $least to $most}"
}

# fits KIND TEXT
fits() {
    local kind least most
    IFS=: read -r kind least most <<<"$1"
    [[ $2 =~ ^(${look_of[$kind]})$ ]] || return
    [ -z "$least" ] || awk -v text="$2" -v least="$least" -v most="$most" 'BEGIN {
        split(text, part, "/")
        number = part[1] / (part[2] == "" ? 1 : part[2])
        exit !(number >= least && number <= most) }'
}

# meant KIND TEXT: names of files and folders are meant as seen from where the caller stands.
meant() {
    case "$1" in
        film | png | ppm | html | piece | file | folder | fill | path) absolute "$2" ;;
        *) printf '%s' "$2" ;;
    esac
}

# refuse_operands TEXT: what the mode needs instead.
refuse_operands() {
    if [ "$mode" = main ]; then
        refuse "needs $1: $(right)"
    else
        refuse "$mode needs $1: $(right)"
    fi
}

# right: a call of the mode that would be right.
right() {
    local caller=$mode
    [ "$mode" != main ] || caller=${program:?}
    printf '%s' "$caller${example_of[$mode]:+ ${example_of[$mode]}}"
}

# take_value OPTION [VALUE]
take_value() {
    local kind example
    read -r kind example <<<"${value_of[$1]}"
    [ $# -ge 2 ] || refuse "$1 needs $(kind_name "$kind"): $1 $example"
    fits "$kind" "$2" || refuse "$1 needs $(kind_name "$kind"), not \"$2\": $1 $example"
    given[$1]=$(meant "$kind" "$2")
}

# take_operands WORD...: as the mode wants them.
take_operands() {
    local kinds word index=0
    read -ra kinds <<<"${operands_of[$mode]:-}"
    for word in "$@"; do
        [ "$index" -lt ${#kinds[@]} ] || refuse "\"$word\" is one word too many: $(right)"
        take_operand "${kinds[index]%[?+*]}" "$word"
        [[ ${kinds[index]} == *[+*] ]] || index=$((index + 1))
    done
    [ "$#" -ge ${#kinds[@]} ] || [[ ${kinds[$#]} == *[?*] ]] || refuse_lack "${kinds[@]}"
}

# take_operand KIND WORD
take_operand() {
    fits "$1" "$2" || refuse_operands "$(kind_name "$1"), not \"$2\""
    operands+=("$(meant "$1" "$2")")
    kinds_given+=("$1")
}

# refuse_lack KIND...: what there has to be.
refuse_lack() {
    local kind
    local wanted=()
    for kind in "$@"; do
        wanted+=("$(kind_name "${kind%[?+*]}")")
    done
    refuse_operands "$(listed and "${wanted[@]}")"
}

# check_options: whether the mode takes those that were given.
check_options() {
    local option taken
    local with=$mode
    local takes="no options"
    read -ra taken <<<"${options_of[$mode]:-}"
    [ "$mode" != main ] || with="${program:?} without a mode"
    [ ${#taken[@]} -eq 0 ] || takes=$(listed and "${taken[@]}")
    for option in "${!given[@]}"; do
        [[ " ${taken[*]} ${options_of[every]:-} " == *" $option "* ]] ||
            refuse "$option does not go with $with, which takes $takes"
    done
}

# understand WORD...: what the caller wants; everything else is refused.
understand() {
    local words=()
    answer_help "$@"
    while [ $# -gt 0 ]; do
        if [[ $1 != -[!0-9]* ]]; then
            words+=("$1")
        elif [ -n "${operands_of[$1]+known}" ]; then
            [ "$mode" = main ] || refuse "$mode and $1 do not go together"
            mode=$1
        elif [ -z "${value_of[$1]+known}" ]; then
            refuse "there is no option $1"
        elif [ -z "${value_of[$1]}" ]; then
            given[$1]=
        else
            take_value "${@:1:2}"
            shift
        fi
        shift
    done
    check_options
    take_operands "${words[@]}"
    check_places
}

# check_places: of all files and folders that were named.
check_places() {
    local option i
    for option in "${!given[@]}"; do
        need_place "${value_of[$option]%% *}" "${given[$option]}"
    done
    for i in "${!operands[@]}"; do
        need_place "${kinds_given[i]}" "${operands[i]}"
    done
}

# answer_help WORD...: prints the usage and ends the script if a word asks for it; beside a mode, what
# concerns that.
answer_help() {
    local word
    local asked=
    local about=main
    for word in "$@"; do
        case "$word" in
            -h | --help) asked=yes ;;
            -*) [ -z "${operands_of[$word]+known}" ] || about=$word ;;
        esac
    done
    [ -n "$asked" ] || return 0
    if [ "$about" = main ]; then usage; else usage_of "$about"; fi
    exit
}

# usage_of MODE: what the usage says of it and of its options.
usage_of() {
    usage | awk -v mode="$1" -v options=" ${options_of[$1]:-} " '
        /^[^ ]/ { shown = $2 == mode ? 1 : index(options, " " $1 " ") ? 2 : 0 }
        /^$/ { shown = 0 }
        shown == 2 && !parted++ { print "" }
        shown'
}
