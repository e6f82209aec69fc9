# Reads "DEMO_TIME MILLISECONDS PROCESSOR_MILLISECONDS" of the show's frames, in order, and prints rows
# "NAME MILLISECONDS [DEMO_TIME]":
#
#   flight-N       the median of all its frames
#   flight-N-slow  what 99 in 100 of them stay within
#   flight-N-worst the longest, and when that was
#   cut-N          the longest of the first frames of flight N, which find in view what was not
#   first          the show's first frame
#
# -v cuts="0 13.912 ..."  when the flights begin, and when the last one ends
# -v column=2             milliseconds; 3: of the processor
BEGIN {
    flights = split(cuts, cut, " ") - 1
    cut_frames = 3
    flight = 1
}

{
    while (flight < flights && $1 >= cut[flight + 1]) flight++
    milliseconds[flight, ++count[flight]] = $column
    moment[flight, count[flight]] = $1
}

NR == 1 { first = $column }

function sort_frames(f, last,  i, j, ms, at) {
    for (i = 2; i <= last; i++) {
        ms = milliseconds[f, i]
        at = moment[f, i]
        for (j = i - 1; j >= 1 && milliseconds[f, j] > ms; j--) {
            milliseconds[f, j + 1] = milliseconds[f, j]
            moment[f, j + 1] = moment[f, j]
        }
        milliseconds[f, j + 1] = ms
        moment[f, j + 1] = at
    }
}

# Of those that the flight begins with.
function longest_at_cut(f,  i, longest) {
    for (i = 1; i <= cut_frames && i <= count[f]; i++)
        if (milliseconds[f, i] > longest) longest = milliseconds[f, i]
    return longest
}

END {
    for (f = 1; f <= flights; f++) {
        last = count[f]
        if (last == 0) continue
        if (f > 1) at_cut[f] = longest_at_cut(f)
        sort_frames(f, last)
        printf "flight-%d %.6g\n", f, milliseconds[f, int((last + 1) / 2)]
        printf "flight-%d-slow %.6g\n", f, milliseconds[f, int(last * 0.99 + 0.5)]
        printf "flight-%d-worst %.6g %.3f\n", f, milliseconds[f, last], moment[f, last]
    }
    printf "first %.6g\n", first
    for (f = 2; f <= flights; f++)
        if (f in at_cut) printf "cut-%d %.6g\n", f, at_cut[f]
}
