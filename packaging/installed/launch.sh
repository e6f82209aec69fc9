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
nimbrel [--big]    plays Nimbrel, two minutes of picture and music

--big  shows the same picture as wide as the screen, every pixel a hard-edged square

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

options_of=([main]="--big")
value_of=([--big]="")
understand "$@"
big= # the library that enlarges the picture, when that is asked for
if has --big; then big=$prefix/libexec/nimbrel/libnimbrel_big.so; fi
play_apart "$prefix/share/nimbrel/Data"
present "$prefix/libexec/nimbrel/nimbrel_escape" "$prefix/libexec/nimbrel/nimbrel" ${big:+"$big"}
all_is_well || say "Something is wrong here; that page has what the demo knows of it."
exit "$status"
