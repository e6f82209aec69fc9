#!/usr/bin/env bash
# leakchecked.sh PROGRAM [ARGUMENT...]: runs a test of the sanitizer build, and runs it again when the leak
# checker fell over a thread of the driver that was just ending ("Tracer caught signal 11"). That happens
# now and then after the tests have passed, and such a run says nothing of leaks; the next one does.
# A test that failed by itself is not given another chance.
set -euo pipefail

attempts=5 # of which three fell on a machine with ten other jobs
output=$(mktemp)
trap 'rm -f "$output"' EXIT

said() { grep -q "$1" "$output"; }

only_checker_fell() {
    said '^==[0-9]*==LeakSanitizer has encountered a fatal error' && ! said '^\[  FAILED  \]'
}

for ((attempt = 1; attempt <= attempts; ++attempt)); do
    status=0
    "$@" 2>&1 | tee "$output" || status=$?
    if [ "$status" -eq 0 ] || ! only_checker_fell; then
        break
    fi
done
exit "$status"
