# shellcheck shell=bash
# What is said to the caller, and what he says. Sourced by common.sh.

exit_wrong_usage=2

say() { printf '%s\n' "$*" >&2; }

die() {
    say "$*"
    exit 1
}

# passing TEXT: on a terminal, one line that the next one takes the place of; without TEXT none.
passing() {
    if [ -t 2 ]; then
        printf '\r\033[K%s' "$*" >&2
    fi
}

# refuse TEXT...: says what would be right, and what is wrong with how the script was called.
refuse() {
    usage >&2
    say
    say "$0: $*"
    exit "$exit_wrong_usage"
}

# answer_help WORD...: prints the usage and ends the script if a word asks for it.
answer_help() {
    local word
    for word in "$@"; do
        case "$word" in
            -h | --help) usage; exit ;;
        esac
    done
}

# take_no_words WORD...: for scripts that know none but --help.
take_no_words() {
    answer_help "$@"
    [ $# -eq 0 ] || refuse "there is no \"$1\""
}

# need_value OPTION [VALUE...]: refuses an option at the end of the line.
need_value() {
    [ $# -ge 2 ] || refuse "$1 needs a value"
}

# absolute PATH: a path as the caller meant it.
absolute() {
    (cd "${called_from:?}" && realpath -m -- "$1")
}
