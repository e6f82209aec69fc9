# shellcheck shell=bash
# What the scripts share. Sourced, never run, by a script that has just gone to the repository's root
# and that has a function `usage`, which prints how it is called.

# Where the caller stands; names of files are meant as seen from there.
called_from=$OLDPWD

. packaging/words.sh
. packaging/options.sh
. packaging/places.sh
. packaging/signals.sh
. packaging/packages.sh
. packaging/display.sh
. packaging/build.sh
. packaging/preload.sh
. packaging/show.sh
