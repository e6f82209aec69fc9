# shellcheck shell=bash
# A display to draw on. Sourced by common.sh.

virtual_display= # its process, once there is one

# start_display: when no display answers, starts a virtual one, exports DISPLAY and returns 0;
# returns 1 when the display at hand was kept. The virtual display ends with this script.
start_display() {
    if [ -n "${DISPLAY:-}" ] && display_answers; then
        return 1
    fi
    make_scratch
    mkdir "${scratch:?}/display"
    # In a session of its own, since Ctrl-C shall end it only after what draws there; but however
    # this script ends, by SIGKILL even, it does not stay behind.
    setsid setpriv --pdeathsig TERM Xvfb -displayfd 3 -screen 0 1280x1024x24 +extension GLX \
        -nolisten tcp -noreset </dev/null 3>"${scratch:?}/display/number" 2>"$scratch/display/log" &
    virtual_display=$!
    await_display
    DISPLAY=:$(cat "${scratch:?}/display/number")
    export DISPLAY
    rm -rf "${scratch:?}/display"
    return 0
}

# await_display: until the server has written its number.
await_display() {
    local tries=0
    until [ -s "${scratch:?}/display/number" ]; do
        tries=$((tries + 1))
        if ! kill -0 "$virtual_display" 2>/dev/null || [ "$tries" -gt 200 ]; then
            cat "${scratch:?}/display/log" >&2
            die "The virtual display (Xvfb) did not start."
        fi
        sleep 0.05
    done
}

stop_display() {
    [ -n "$virtual_display" ] || return 0
    kill "$virtual_display" 2>/dev/null || true
    wait "$virtual_display" 2>/dev/null || true
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
