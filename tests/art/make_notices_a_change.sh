#!/usr/bin/env bash
# Usage: make_notices_a_change.sh SOURCE BUILD. art/make --check must name a file that differs from
# what its program makes, and one that is missing, and must fail.
set -u
cd "$1" || exit
. packaging/common.sh
make_scratch
data=$scratch
mkdir -p "$data/Gfx/Fish" "$data/Gfx/City"
cp "$1/Data/Gfx/Fish/fish.png" "$data/Gfx/Fish"
printf x >>"$data/Gfx/Fish/fish.png"
# As after a move of the first flight, which begins 1 unit over the water.
sed 's/vec3(-1.0, 18.0/vec3(-1.0, 17.0/' "$1/Data/Gfx/City/shader.vert" >"$data/Gfx/City/shader.vert"

output=$("$1/art/make" --check --data "$data" --build "$2" views fish 2>&1)
status=$?
for file in Fish/fish.png Fish/fish.xt3dstatic City/shader.vert; do
    grep -q "Gfx/$file is not what its program makes" <<<"$output" || {
        printf 'expected a complaint about %s, found:\n%s\n' "$file" "$output"
        exit 1
    }
done
[ "$status" -ne 0 ] || { echo "expected a failure, found success"; exit 1; }
