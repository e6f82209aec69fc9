# shellcheck shell=bash
# Whether files can be where the caller said that they are, before anything is built for them. Each
# refuses in the words of tools/options/places.h, with the path, what is wrong with it and what would be
# right. Sourced by common.sh.

# why_closed FOLDER: why no file can be made in it; nothing when one can.
why_closed() {
    local probe
    if probe=$(LC_ALL=C mktemp -- "$1/.nimbrel_XXXXXX" 2>&1); then
        rm -f -- "$probe"
    else
        printf '%s' "${probe##*: }"
    fi
}

# need_open PATH FOLDER: that a new file can be made in the folder, which has to be there.
need_open() {
    local why
    why=$(why_closed "$2")
    [ -z "$why" ] || refuse "cannot write $1: the folder $2 takes no new files ($why); name another folder"
}

# need_file_to_write FILE
need_file_to_write() {
    local folder
    folder=$(dirname -- "$1")
    [ ! -d "$1" ] || refuse "cannot write $1: it is a folder; name a file in it"
    [ -e "$folder" ] || refuse "cannot write $1: there is no folder $folder; make it first, or name another"
    [ -d "$folder" ] || refuse "cannot write $1: $folder is no folder; name another"
    need_open "$1" "$folder"
}

# need_file_to_read FILE
need_file_to_read() {
    [ -e "$1" ] || refuse "cannot read $1: there is no such file; name one that is there"
    [ ! -d "$1" ] || refuse "cannot read $1: it is a folder; name a file in it"
    [ -r "$1" ] || refuse "cannot read $1: Permission denied; name a file that you may read"
}

# need_folder FOLDER
need_folder() {
    [ -e "$1" ] || refuse "cannot read $1: there is no such folder; name one that is there"
    [ -d "$1" ] || refuse "cannot read $1: it is no folder; name one"
}

# make_folder FOLDER: makes it, with those that it lies in, unless it is there.
make_folder() {
    local why
    why=$(LC_ALL=C mkdir -p -- "$1" 2>&1) || refuse "cannot make the folder $1 (${why##*: }); name another"
    need_open "$1" "$1"
}
