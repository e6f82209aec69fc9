# shellcheck shell=bash
# Configuring and building. Sourced by common.sh. What fails here has said so, and returns false.

# build PRESET [-DNAME=VALUE...] [TARGET...]: configures the folder build/PRESET as far as that is not
# done, and builds these targets, or everything there.
build() {
    local preset=$1
    local word
    local options=()
    local targets=()
    shift
    for word in "$@"; do
        case "$word" in
            -D*) options+=("$word") ;;
            *) targets+=("$word") ;;
        esac
    done
    alone configure_and_build
}

# configure_and_build: for `build`, with its variables.
configure_and_build() {
    configure "build/$preset" . --preset "$preset" "${options[@]}" &&
        build_targets "build/$preset" "${targets[@]}"
}

# configure_preset PRESET [-DNAME=VALUE...]: the first half of that alone.
configure_preset() {
    alone configure "build/$1" . --preset "$@"
}

# build_folder FOLDER [TARGET...]: the second half alone, in any folder that is configured.
build_folder() {
    alone build_targets "$@"
}

# alone COMMAND...: what lies under build/ is one script's at a time, and the next one waits. Whoever
# dies lets go.
alone() {
    local status=0
    local lock
    mkdir -p build
    exec {lock}>build/lock
    flock --nonblock "$lock" || {
        say "Another command is building here: waiting for it to finish."
        attended flock "$lock"
    }
    "$@" || status=$?
    flock --unlock "$lock"
    exec {lock}>&-
    return "$status"
}

# configure FOLDER SOURCES CMAKE-WORD...: unless the folder is configured so already. Later changes of
# the CMake files are seen by the build itself.
configure() {
    local folder=$1
    local sources=$2
    local fresh=()
    shift 2
    ! is_configured "$folder" "$sources" "$@" || return 0
    # A copied or renamed checkout brings a cache that leads to the sources it was made from.
    made_from "$folder" "$sources" || fresh=(--fresh)
    mkdir -p "$folder"
    rm -f "$folder/configured"
    passing "Configuring ..."
    attended cmake "${fresh[@]}" "$@" >"$folder/configure.log" 2>&1 || {
        passing
        cat "$folder/configure.log" >&2
        say "Configuring $folder failed."
        return 1
    }
    passing
    : >"$folder/configured"
}

# made_from FOLDER SOURCES: whether what the folder holds, if anything, was configured from these.
made_from() {
    local home
    [ -f "$1/CMakeCache.txt" ] || return 0
    home=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$1/CMakeCache.txt")
    [ "$home" -ef "$2" ]
}

# is_configured FOLDER SOURCES CMAKE-WORD...: whether it is so to the end, from these sources, by
# these presets and with these options.
is_configured() {
    local folder=$1
    local word
    [ -f "$folder/configured" ] && [ -f "$folder/build.ninja" ] && made_from "$1" "$2" || return
    [ ! CMakePresets.json -nt "$folder/configured" ] || return
    shift 2
    for word in "$@"; do
        case "$word" in
            -D*=*)
                word=${word#-D}
                grep -qx "${word%%=*}:[A-Z]*=${word#*=}" "$folder/CMakeCache.txt" || return
                ;;
        esac
    done
}

# build_targets FOLDER [TARGET...]: shows how far it is. What it says stands in FOLDER/build.log, and
# is shown when it fails.
build_targets() {
    attended run_build "$@" || {
        passing
        grep -vE '^\[[0-9]+/' "$1/build.log" >&2
        say "Building in $1 failed."
        return 1
    }
}

run_build() {
    local folder=$1
    shift
    [ $# -eq 0 ] || set -- --target "$@"
    NINJA_STATUS='[%f/%t] ' cmake --build "$folder" "$@" 2>&1 | show_steps >"$folder/build.log"
}

# show_steps: passes on what ninja says, and shows how far it is: on a terminal in one line that
# moves, else at every quarter.
show_steps() {
    local line
    local quarter=-1
    while IFS= read -r line; do
        printf '%s\n' "$line"
        # A step that only looks whether there are others is none.
        [[ $line =~ ^\[([0-9]+)/([0-9]+)\]\ (Re-)? ]] || continue
        [ -n "${BASH_REMATCH[3]:-}" ] || show_step "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}"
    done
    passing
}

# show_step NUMBER COUNT
show_step() {
    local percent=$((100 * $1 / $2))
    local text="Building: $percent % ($1 of $2 steps)"
    passing "$text"
    if [ ! -t 2 ] && [ $((percent / 25)) -gt "$quarter" ]; then
        quarter=$((percent / 25))
        say "$text"
    fi
}
