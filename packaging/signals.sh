# shellcheck shell=bash
# How a script ends: with all that it started, by a signal within a second. Sourced by common.sh.

job= # the process group that `attended` waits for

# on_signals FUNCTION: FUNCTION gets the name of the signal that shall end the script.
on_signals() {
    local name
    for name in HUP INT QUIT TERM; do
        # shellcheck disable=SC2064  # the function's name now
        trap "answered=yes; $1 $name" "$name"
    done
}

# status_of SIGNAL: the exit status that shells give to what a signal ended.
status_of() {
    echo $((128 + $(kill -l "$1")))
}

# leave_terminal SIGNAL: a terminal that hung up takes no more words.
leave_terminal() {
    [ "$1" != HUP ] || exec >/dev/null 2>&1
}

# end_by SIGNAL: ends the job and the script.
end_by() {
    on_signals :
    leave_terminal "$1"
    passing
    end_job
    exit "$(status_of "$1")"
}

# end_job: asks the job to end, then ends it.
end_job() {
    [ -n "$job" ] || return 0
    kill -TERM -- "-$job" 2>/dev/null || true
    for _ in 1 2 3 4 5 6 7 8; do
        kill -0 -- "-$job" 2>/dev/null || return 0
        sleep 0.05
    done
    kill -KILL -- "-$job" 2>/dev/null || true
}

# pause_job: Ctrl-Z, which stops this script, stops the job with it.
pause_job() {
    [ -z "$job" ] || kill -STOP -- "-$job"
    kill -STOP $$
    [ -z "$job" ] || kill -CONT -- "-$job"
}

# start_job COMMAND...: starts it in a process group of its own, which the terminal's Ctrl-C and
# hang-up do not reach: this script decides what they mean.
start_job() {
    set -m
    "$@" </dev/null &
    job=$!
    set +m
}

# end_of_job: waits for it; its exit status.
end_of_job() {
    local status
    answered=yes
    while [ -n "$answered" ]; do # wait ends whenever a signal has been answered
        answered=
        status=0
        wait "$job" || status=$?
    done
    job=
    return "$status"
}

# attended COMMAND...: runs it so that a signal ends it and the script at once. (Of a command in the
# foreground bash would wait for the end first.)
attended() {
    start_job "$@"
    end_of_job
}

# inside FOLDER COMMAND...: runs it there.
inside() {
    cd "$1" || return
    shift
    "$@"
}

scratch= # a temporary folder that ends with the script, once it is made

# make_scratch: makes it, unless it is there.
make_scratch() {
    [ -n "$scratch" ] || scratch=$(mktemp -d 2>/dev/null) ||
        refuse "cannot make a folder for temporary files in ${TMPDIR:-/tmp}; set TMPDIR to one that takes files"
}

leave_nothing() {
    stop_display
    [ -z "$scratch" ] || rm -rf "$scratch"
}

on_signals end_by
trap 'answered=yes; pause_job' TSTP
trap '' TTOU # or a terminal told to (stty tostop) would stop a job that has something to say
trap leave_nothing EXIT
