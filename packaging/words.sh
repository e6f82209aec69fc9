# shellcheck shell=bash
# What is said to the caller. Sourced by common.sh.

exit_wrong_usage=2 # for whatever is refused: nothing was done then

# How the caller would call the script: "./movie", "art/make".
program=$(cd "${called_from:?}" && realpath -- "$0")
program=${program#"$PWD/"}
[[ $program == */* ]] || program=./$program

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

# refuse TEXT...: says what is wrong with how the script was called, and what would be right.
refuse() {
    say "$program: $*"
    say "See $program --help."
    exit "$exit_wrong_usage"
}

# absolute PATH: a path as the caller meant it.
absolute() {
    (cd "${called_from:?}" && realpath -m -- "$1")
}
