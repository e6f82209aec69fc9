#!/usr/bin/env bash
# escape-after COMMAND...: presses Escape in the window of the demo that COMMAND starts, once it has
# played for a second. The status is that of COMMAND.
set -euo pipefail

descendants() { # descendants PROCESS: it and those that it started
    local child children=()
    echo "$1"
    read -ra children <"/proc/$1/task/$1/children" || true
    for child in "${children[@]}"; do
        descendants "$child"
    done
}

demo_of() { # demo_of PROCESS: the number of the demo among these, if it is there
    local process
    for process in $(descendants "$1" 2>/dev/null); do
        [ "$(cat "/proc/$process/comm" 2>/dev/null)" != nimbrel ] || echo "$process"
    done
}

"$@" &
started=$!
demo=
until [ -n "$demo" ]; do
    kill -0 "$started" 2>/dev/null || {
        echo "no demo was started" >&2
        exit 1
    }
    sleep 0.1
    demo=$(demo_of "$started")
done
sleep 1
# On whatever display it plays. That may end with the demo, before the key's presser has noticed.
mapfile -d '' -t surroundings <"/proc/$demo/environ"
env "${surroundings[@]}" "$BINARIES/tools/escape/nimbrel_escape" "$demo" 2>/dev/null || true
wait "$started"
