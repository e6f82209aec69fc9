#!/usr/bin/env bash
# Fetches and unpacks the sources that web/libraries/table names into the folder given, as far as they
# are not there. Debian's source packages are looked up in lists of this folder's own: the machine's apt
# is left as it is.
set -euo pipefail
here=$(dirname "$(realpath "$0")")
folder=$(realpath -m -- "$1")

# rows: package, archive and sum of each line.
rows() { grep -v '^#' "$here/table"; }

# apt_with_sources WORD...: apt-get that knows where source packages are and nothing else.
apt_with_sources() {
    local tool=$1
    shift
    mkdir -p apt/lists/partial
    printf 'deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] %s main\n' \
        'http://deb.debian.org/debian bookworm' \
        'http://deb.debian.org/debian-security bookworm-security' >apt/sources.list
    "$tool" -q=2 -o Dir::Etc::SourceList="$PWD/apt/sources.list" -o Dir::Etc::SourceParts=/dev/null \
        -o Dir::State::Lists="$PWD/apt/lists" -o Dir::Cache="$PWD/apt" -o APT::Sandbox::User=root "$@"
}

# has_right_sum ARCHIVE SUM
has_right_sum() {
    [ -f "$1" ] && sha256sum --check --status <<<"$2  $1"
}

# fetch PACKAGE ARCHIVE SUM
fetch() {
    ! has_right_sum "$2" "$3" || return 0
    [ -d apt ] || apt_with_sources apt-get update
    apt_with_sources apt-get source --tar-only "$1"
    has_right_sum "$2" "$3" || {
        echo "$2 is not the archive that web/libraries/table names." >&2
        exit 1
    }
}

mkdir -p "$folder"
cd "$folder"
while read -r package archive sum; do
    [ ! -f "$package/.unpacked-$sum" ] || continue
    fetch "$package" "$archive" "$sum"
    rm -rf "$package"
    mkdir "$package"
    tar -xf "$archive" -C "$package" --strip-components=1
    : >"$package/.unpacked-$sum"
done < <(rows)
rm -rf apt
