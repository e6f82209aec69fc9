# Shared by ./play, ./movie, ./test, ./art/make and bench/: packages, display, build. Sourced, never run.
# The caller has already changed into the repository's root.

# What Debian 12 must have installed, by purpose.
packages_play="g++ cmake ninja-build pkgconf libsdl1.2-dev libgl-dev libglu1-mesa-dev
    libgl1-mesa-dri libjpeg62-turbo-dev libpng-dev libmpg123-dev libasound2-dev
    libkissfft-dev xvfb"
packages_movie="ffmpeg"
packages_art="libembree-dev libmp3lame-dev"
packages_test="libgtest-dev libgmock-dev libx11-dev libxtst-dev lame ffmpeg gcovr
    clang-format clang-tidy git"

say() { printf '%s\n' "$*" >&2; }

die() {
    say "$*"
    exit 1
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        die "Installing packages needs root, and there is no sudo here. As root, run: $*"
    fi
}

# missing_packages NAME...: prints those that are not installed.
missing_packages() {
    local name
    local installed
    installed=" $(dpkg-query -W -f='${binary:Package}=${db:Status-Abbrev} ' "$@" 2>/dev/null |
        sed 's/:[a-z0-9]*=/=/g') "
    for name in "$@"; do
        case "$installed" in
            *" $name=ii "*) ;;
            *) printf '%s ' "$name" ;;
        esac
    done
}

# need_packages NAME...: installs what is missing; quick when nothing is.
need_packages() {
    command -v dpkg-query >/dev/null || {
        say "This is not a Debian system: I take it that these packages' like are installed:" "$@"
        return 0
    }
    local missing
    missing=$(missing_packages "$@")
    [ -n "$missing" ] || return 0
    say "Installing: $missing"
    # shellcheck disable=SC2086  # a list of names, one argument each
    {
        as_root apt-get update -qq &&
            as_root env DEBIAN_FRONTEND=noninteractive \
                apt-get install -y -qq --no-install-recommends $missing
    } >&2 || die "Could not install: $missing"
}

# configure PRESET [OPTION...]: once; later changes of the CMake files are seen by the build itself.
configure() {
    local preset=$1
    shift
    local stamp="build/$preset/configured"
    if [ $# -eq 0 ] && [ -f "build/$preset/build.ninja" ]; then
        return 0 # whatever else it was configured for, it builds the demo
    fi
    if [ ! -f "$stamp" ] || [ "$(cat "$stamp")" != "$*" ]; then
        cmake --preset "$preset" "$@" >"build-$preset.log" 2>&1 || {
            cat "build-$preset.log" >&2
            die "Configuring the preset '$preset' failed."
        }
        mv "build-$preset.log" "build/$preset/configure.log"
        printf '%s' "$*" >"$stamp"
    fi
}

# build_release TARGET...: in the configured folder; what the build says is shown only when it fails.
build_release() {
    cmake --build build/release --target "$@" >build/release/build.log 2>&1 || {
        cat build/release/build.log >&2
        die "Building failed."
    }
}

# start_display: when no display answers, starts a virtual one, exports DISPLAY and returns 0;
# returns 1 when the display at hand was kept. The virtual display ends with this script.
start_display() {
    if [ -n "${DISPLAY:-}" ] && display_answers; then
        return 1
    fi
    local folder
    folder=$(mktemp -d)
    # In a session of its own: Ctrl-C ends the script, which may still need the display.
    setsid Xvfb -displayfd 3 -screen 0 1280x1024x24 +extension GLX -nolisten tcp -noreset \
        3>"$folder/display" 2>"$folder/log" &
    virtual_display=$!
    trap stop_display EXIT
    local tries=0
    while [ ! -s "$folder/display" ]; do
        tries=$((tries + 1))
        kill -0 "$virtual_display" 2>/dev/null && [ "$tries" -lt 100 ] || {
            cat "$folder/log" >&2
            die "The virtual display (Xvfb) did not start."
        }
        sleep 0.1
    done
    export DISPLAY=":$(cat "$folder/display")"
    rm -rf "$folder"
    return 0
}

stop_display() {
    [ -z "${virtual_display:-}" ] || kill "$virtual_display" 2>/dev/null || true
}

# Whether an X server listens where DISPLAY says (a socket here, or a host that we cannot probe).
display_answers() {
    case "$DISPLAY" in
        :*)
            local number=${DISPLAY#:}
            number=${number%%.*}
            [ -S "/tmp/.X11-unix/X$number" ] && grep -q "@*/tmp/.X11-unix/X$number\$" /proc/net/unix
            ;;
        *) true ;;
    esac
}
