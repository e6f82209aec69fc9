# shellcheck shell=bash
# A display to draw on. Sourced by common.sh, and by the launcher of an installed Nimbrel.

virtual_display= # its process, once there is one

# start_display: when no display answers, starts a virtual one, exports DISPLAY and returns 0;
# returns 1 when the display at hand was kept. The virtual display ends with this script.
start_display() {
    if [ -n "${DISPLAY:-}" ] && display_answers; then
        return 1
    fi
    need_packages xvfb
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

# display_answers: whether a server takes a connection where DISPLAY says, as it would of an X client:
# ":7" by the socket's file, which other network namespaces see, or by its abstract name, which other
# root folders see; "host:7" by its port. Nothing is said on the connection: a server that starts over
# when its last client leaves does not count this one. Without Perl the name is taken for the display.
display_answers() {
    command -v perl >/dev/null || return 0
    perl -MIO::Socket::UNIX -MIO::Socket::IP -e '
        my ($host, $number) = $ENV{DISPLAY} =~ /^(.*):(\d+)(?:\.\d+)?$/ or exit 1;
        my $file = "/tmp/.X11-unix/X$number";
        my @sockets = $host =~ m,^(?:unix)?$|/, ? ($file, "\0$file") : ();
        exit !(@sockets ? grep { IO::Socket::UNIX->new(Peer => $_) } @sockets
            : IO::Socket::IP->new(PeerHost => $host, PeerPort => 6000 + $number, Timeout => 5))'
}
