# shellcheck shell=bash disable=SC2034  # the lists are for the scripts
# What must be installed, on Debian 12. Sourced by common.sh.

# By purpose; a script names those that it needs. What a virtual display needs is asked for only
# where no other answers (display.sh).
packages_build="g++ cmake ninja-build pkgconf libsdl1.2-dev libgl-dev libglu1-mesa-dev
    libjpeg62-turbo-dev libpng-dev libmpg123-dev libasound2-dev libkissfft-dev libx11-dev"
packages_play="$packages_build libgl1-mesa-dri" # and for whatever else draws
packages_tools="nlohmann-json3-dev libssl-dev" # for whatever is configured with NIMBREL_BUILD_TOOLS
packages_bench_mesh="libfast-float-dev" # for whatever is configured with NIMBREL_BUILD_BENCH_MESH
packages_bench_small="libbenchmark-dev" # likewise with NIMBREL_BUILD_BENCH_SMALL
packages_big="libxrandr-dev" # for whatever is configured with NIMBREL_BUILD_BIG
packages_movie="ffmpeg" # for films, not for single pictures
packages_art="libembree-dev libmp3lame-dev libebur128-dev"
packages_test="libgtest-dev libgmock-dev libxtst-dev lame ffmpeg git xauth xvfb
    libxrandr-dev
    libsdl2-dev libglfw3-dev libegl-dev doxygen" # SDL 2, GLFW and EGL for what gallery/ shows
packages_comments="doxygen"
packages_web="cmake ninja-build emscripten brotli python3" # and the sources in web/libraries/table
packages_web_check="chromium firefox-esr python3-websocket python3-numpy pulseaudio ffmpeg"
packages_docs="doxygen graphviz"
packages_format="clang-format"
packages_style="shellcheck"
packages_tidy="clang-tidy"
packages_fuzz="clang libclang-rt-14-dev" # which brings libFuzzer
packages_cppcheck="cppcheck"
packages_valgrind="valgrind"
packages_surroundings="libsdl1.2-compat locales" # SDL 2's layer, and a locale to make
packages_web_gl="libegl-dev libegl-mesa0 libgles2" # OpenGL ES 3 without a window, under web/gl
packages_packaging="dpkg-dev patchelf" # dpkg-dev finds out which packages the demo needs
packages_checks="lintian appstream desktop-file-utils"
packages_coverage="g++ gcovr"

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        die "Installing packages needs root, and there is no sudo here. As root, run: $*"
    fi
}

# missing_packages NAME...: prints those that are not installed. Of dpkg's two letters the first is what
# was asked for ("h": to stay as it is), the second what there is.
missing_packages() {
    local name
    local installed
    installed=" $(dpkg-query -W -f='${binary:Package}=${db:Status-Abbrev} ' "$@" 2>/dev/null |
        sed 's/:[a-z0-9]*=/=/g') "
    for name in "$@"; do
        case "$installed" in
            *" $name="?"i "*) ;;
            *) printf '%s ' "$name" ;;
        esac
    done
}

# apt_get WORD...: runs it as root, quietly. While another program holds one of apt's locks, on its
# lists, its archive or dpkg, that program is waited for.
apt_get() {
    local complaint
    local told=
    until { complaint=$(as_root env LC_ALL=C DEBIAN_FRONTEND=noninteractive \
        apt-get -qq "$@" 2>&1 >&3); } 3>&2; do
        case "$complaint" in
            *"Could not get lock"*) ;;
            *) say "$complaint"; return 1 ;;
        esac
        [ -n "$told" ] || say "Another program is installing packages: waiting for it to finish."
        told=yes
        sleep 1
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
    if ! apt_get update || ! apt_get install -y --no-install-recommends $missing; then
        die "Could not install: $missing"
    fi
}
