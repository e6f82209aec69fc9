#!/usr/bin/env bash
# Usage: make_notices_a_change.sh SOURCE BUILD. art/make --check must name a file that differs from
# what its program makes, and one that is missing, and must fail.
set -u
data=$(mktemp -d)
trap 'rm -rf "$data"' EXIT
mkdir -p "$data/Gfx/Fish"
cp "$1/Data/Gfx/Fish/fish.png" "$data/Gfx/Fish"
printf x >>"$data/Gfx/Fish/fish.png"

output=$("$1/art/make" --check --data "$data" --build "$2" fish 2>&1)
status=$?
for file in fish.png fish.xt3dstatic; do
    grep -q "Gfx/Fish/$file is not what its program makes" <<<"$output" || {
        printf 'expected a complaint about %s, found:\n%s\n' "$file" "$output"
        exit 1
    }
done
[ "$status" -ne 0 ] || { echo "expected a failure, found success"; exit 1; }
