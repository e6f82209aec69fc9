# shellcheck shell=bash disable=SC2154  # what bench/run has set
# What docs/performance.md draws: measures it into costs.tsv, and draws that as pictures. Sourced by
# bench/run.
#
# costs.tsv has one line a point: the picture, the curve, where it stands and how high.

costs=docs/performance/costs.tsv

# medians_of COMMAND...: runs it in every round; the median of each of the numbers that it prints.
medians_of() {
    for _ in $(seq "$rounds"); do
        "$@" | tr '\n' ' '
        echo
    done | awk '
        { for (i = 1; i <= NF; i++) value[i, NR] = $i }
        END { for (i = 1; i <= NF; i++) {
                  for (j = 2; j <= NR; j++) {
                      v = value[i, j]
                      for (k = j - 1; k >= 1 && value[i, k] > v; k--) value[i, k + 1] = value[i, k]
                      value[i, k + 1] = v
                  }
                  printf "%s ", value[i, int((NR + 1) / 2)]
              }
              print "" }'
}

point() { printf '%s\t%s\t%s\t%.4g\n' "$@" >>"$scratch/costs"; }
times() { awk -v a="$1" -v b="$2" 'BEGIN { print a / b }'; }

# Meshes by their vertices, in frames of the yardstick.
plot_meshes() {
    local vertices load most frame yardstick
    for vertices in 15000 60000 240000 960000; do
        passing "a mesh of $vertices vertices"
        read -r load most frame yardstick < <(medians_of mesh_and_yardstick "$vertices")
        point load "loading" "$vertices" "$(times "$load" "$yardstick")"
        point memory "a mesh" "$vertices" "$most"
        point frame "a frame" "$vertices" "$(times "$frame" "$yardstick")"
    done
}
mesh_and_yardstick() {
    "$release/bench/nimbrel_vertices" "$1"
    yardstick_of frame_cpu "$scratch/warm" 50
}

plot_nodes() {
    row_nodes
    awk -F '\t' '$1 ~ /^nodes-/ { sub(/nodes-/, "", $1); print $1, $6 }' "$table" |
        while read -r nodes height; do
            point nodes "a node out of view" "$nodes" "$height"
        done
}

# The film by its jobs, beside the demo as it plays.
plot_film() {
    local jobs height
    passing "films"
    bench/film --jobs 1,2,4 --end 20 | awk '/job/ { print $1, $(NF - 3) }' |
        while read -r jobs height; do
            point film "the film" "$jobs" "$height"
        done
}

# Where the start goes, as parts of the yardstick's start.
plot_start() {
    # shellcheck disable=SC2034  # read by name, below
    local reading decoding driver window first yardstick part
    passing "the start"
    start_and_yardstick >/dev/null # fills the cache
    # shellcheck disable=SC2034  # likewise
    read -r reading decoding driver window first yardstick < <(medians_of start_and_yardstick)
    for part in reading decoding driver window first; do
        point start "$part" 1 "$(times "${!part}" "$yardstick")"
    done
}
start_and_yardstick() {
    MESA_SHADER_CACHE_DIR=$scratch/warm "$release/bench/nimbrel_start" | awk '{ print $2 }'
    yardstick_of start_cpu "$scratch/warm"
}

measure_costs() {
    : >"$scratch/costs"
    plot_start
    plot_meshes
    plot_nodes
    plot_film
    passing
    mv "$scratch/costs" "$costs"
}

draw_costs() {
    local picture
    for picture in start load memory frame nodes film; do
        awk -F '\t' -v picture="$picture" -f bench/plot.awk "$costs" >"$scratch/picture"
        mv "$scratch/picture" "docs/performance/$picture.svg"
    done
}
