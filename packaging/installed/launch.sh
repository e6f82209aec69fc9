#!/bin/bash
# Plays an installed Nimbrel, from whatever folder it is called in and wherever it was unpacked: this
# file lies in bin/ of the prefix.
# shellcheck disable=SC2034,SC2154,SC2317  # what the parts read, set and call
set -euo pipefail
prefix=$(dirname "$(dirname "$(realpath "$0")")")
called_from=$PWD
for part in words options signals display preload show; do
    # shellcheck source=/dev/null
    . "$prefix/share/nimbrel/$part.sh"
done

usage() {
    cat <<'TEXT'
nimbrel    plays Nimbrel, two minutes of picture and music

Escape, pressed in its window, ends the show early; so does Ctrl-C in the terminal. The log page,
Vell_log.html, goes to nimbrel/ in $XDG_STATE_HOME or in ~/.local/state. The exit status is that of the
demo.
TEXT
}

# need_packages NAME...: nothing is installed from here.
need_packages() {
    command -v Xvfb >/dev/null ||
        die "No display answers here, and there is no Xvfb for a virtual one (Debian: $*)."
}

understand "$@"
play_apart "$prefix/share/nimbrel/Data"
present "$prefix/lib/nimbrel/nimbrel_escape" exec "$prefix/lib/nimbrel/nimbrel"
all_is_well || say "Something is wrong here; that page has what the demo knows of it."
exit "$status"
