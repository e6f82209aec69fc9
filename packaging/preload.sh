# shellcheck shell=bash
# Libraries put under a program. Sourced by common.sh.

# preloaded LIBRARY COMMAND...: becomes the command with the library under it. LD_PRELOAD is a list
# that splits at blanks and colons and has no way to quote them, so the library goes by the number of
# an open file.
preloaded() {
    local library
    exec {library}<"$1"
    shift
    LD_PRELOAD=/proc/self/fd/$library exec "$@"
}
