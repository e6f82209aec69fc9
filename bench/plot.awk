# Draws the points of one picture (-v picture=NAME) out of costs.tsv as SVG: curves over a logarithmic
# width, or one bar of parts. Its colours follow the reader's page, light or dark.

BEGIN {
    title["start"] = "Where the start goes"; up["start"] = "the yardstick's start = 1"
    title["load"] = "Loading a mesh"; up["load"] = "frames of the yardstick"
    title["memory"] = "Memory of a mesh"; up["memory"] = "MB"
    title["frame"] = "A frame with a mesh"; up["frame"] = "frames of the yardstick"
    title["nodes"] = "A node out of view"; up["nodes"] = "times testing six planes"
    title["film"] = "The film"; up["film"] = "times as fast as the demo plays"
    across["load"] = across["memory"] = across["frame"] = "vertices"
    across["nodes"] = "nodes"; across["film"] = "jobs"
    from_zero["nodes"] = from_zero["film"] = 1 # others are logarithmic upwards too
    word["reading"] = "reading files"; word["decoding"] = "decoding them"
    word["driver"] = "handing them to the driver"; word["window"] = "window"
    word["first"] = "first frame"
    colours = split("#2f7fd1 #e0662d #2a9d6f #9b59b6 #c9a227", colour, " ")
    wide = 640; high = 300; left = 74; right = 24; above = 48; below = 52
}

$1 == picture {
    if (!($2 in curve)) { curve[$2] = ++curves; name[curves] = $2 }
    n = ++points[curve[$2]]
    x[curve[$2], n] = $3; y[curve[$2], n] = $4
    if (!seen_x[$3]++) tick[++ticks] = $3
    if (least_x == "" || $3 < least_x) least_x = $3
    if ($3 > most_x) most_x = $3
    if (least_y == "" || $4 < least_y) least_y = $4
    if ($4 > most_y) most_y = $4
    total += $4
}

function head() {
    printf "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 %d %d\" role=\"img\" aria-label=\"%s\">\n", wide, high, title[picture]
    print "<style>"
    print "text { font: 13px system-ui, sans-serif; fill: #333 } .title { font-size: 16px; font-weight: 600 }"
    print ".unit { fill: #666 } .grid { stroke: #8884; stroke-width: 1 } .one { stroke: #888; stroke-dasharray: 4 4 }"
    print ".curve { fill: none; stroke-width: 2.5; stroke-linejoin: round } .in { fill: #fff; font-weight: 600 }"
    print "@media (prefers-color-scheme: dark) { text { fill: #ddd } .unit { fill: #aaa } }"
    print "</style>"
    printf "<text class=\"title\" x=\"%d\" y=\"22\">%s</text>\n", left, title[picture]
}

# 15000 is 15,000; 0.5 is 0.5.
function number(value,  text, from) {
    text = sprintf("%g", value)
    if (value >= 1000) {
        text = sprintf("%d", value)
        for (from = length(text) - 2; from > 1; from -= 3)
            text = substr(text, 1, from - 1) "," substr(text, from)
    }
    return text
}

function at_x(value) {
    return left + 20 + (log(value) - log(least_x)) / (log(most_x) - log(least_x)) * (wide - left - right - 40)
}

function at_y(value) {
    if (from_zero[picture]) return high - below - value / top * (high - above - below)
    return high - below - (log(value) - log(bottom)) / (log(top) - log(bottom)) * (high - above - below)
}

function level(value) {
    printf "<line class=\"grid\" x1=\"%d\" x2=\"%d\" y1=\"%.1f\" y2=\"%.1f\"/>", left, wide - right, at_y(value), at_y(value)
    printf "<text class=\"unit\" text-anchor=\"end\" x=\"%d\" y=\"%.1f\">%s</text>\n", left - 8, at_y(value) + 4, number(value)
}

function levels(  step, value, count) {
    if (from_zero[picture]) {
        step = most_y > 40 ? 20 : most_y > 10 ? 5 : most_y > 4 ? 2 : most_y > 1.6 ? 1 : 0.5
        top = step * (int(most_y / step) + 1)
        for (value = 0; value <= top + step / 2; value += step) level(value)
        return
    }
    bottom = 10 ^ floor(log(least_y) / log(10))
    top = 10 ^ -floor(-log(most_y) / log(10))
    for (value = bottom; value <= top * 1.5; value *= 10) level(value)
}

function floor(value) { return value < int(value) ? int(value) - 1 : int(value) }

function axes(  i) {
    levels()
    for (i = 1; i <= ticks; i++)
        printf "<text class=\"unit\" text-anchor=\"middle\" x=\"%.1f\" y=\"%d\">%s</text>\n", at_x(tick[i]), high - below + 20, number(tick[i])
    printf "<text class=\"unit\" text-anchor=\"end\" x=\"%d\" y=\"%d\">%s</text>\n", wide - right, high - 10, across[picture]
    printf "<text class=\"unit\" x=\"%d\" y=\"40\">%s</text>\n", left, up[picture]
}

function draw_curve(c,  i) {
    printf "<polyline class=\"curve\" stroke=\"%s\" points=\"", colour[c]
    for (i = 1; i <= points[c]; i++) printf "%.1f,%.1f ", at_x(x[c, i]), at_y(y[c, i])
    print "\"/>"
    for (i = 1; i <= points[c]; i++) {
        printf "<circle cx=\"%.1f\" cy=\"%.1f\" r=\"4\" fill=\"%s\"/>", at_x(x[c, i]), at_y(y[c, i]), colour[c]
        printf "<text text-anchor=\"middle\" x=\"%.1f\" y=\"%.1f\">%.3g</text>\n", at_x(x[c, i]), at_y(y[c, i]) + (c == 1 ? -10 : 20), y[c, i]
    }
    if (curves > 1)
        printf "<rect x=\"%d\" y=\"%d\" width=\"12\" height=\"12\" rx=\"2\" fill=\"%s\"/><text x=\"%d\" y=\"%d\">%s</text>\n", left + 24, above + 14 + 20 * (c - 1), colour[c], left + 42, above + 25 + 20 * (c - 1), name[c]
}

# One bar of all parts, and what each of them is below it.
function bar(  c, begin, width, scale, y_bar) {
    scale = (wide - left - right) / (total > 1 ? total : 1)
    y_bar = 64
    begin = left
    for (c = 1; c <= curves; c++) {
        width = y[c, 1] * scale
        printf "<rect x=\"%.1f\" y=\"%d\" width=\"%.1f\" height=\"52\" fill=\"%s\"/>\n", begin, y_bar, width, colour[c]
        if (width > 34)
            printf "<text class=\"in\" text-anchor=\"middle\" x=\"%.1f\" y=\"%d\">%.2f</text>\n", begin + width / 2, y_bar + 31, y[c, 1]
        printf "<rect x=\"%d\" y=\"%d\" width=\"12\" height=\"12\" rx=\"2\" fill=\"%s\"/><text x=\"%d\" y=\"%d\">%s: %.2f</text>\n", left, 156 + 24 * (c - 1), colour[c], left + 20, 167 + 24 * (c - 1), word[name[c]], y[c, 1]
        begin += width
    }
    printf "<line class=\"one\" x1=\"%.1f\" x2=\"%.1f\" y1=\"54\" y2=\"128\"/><text class=\"unit\" text-anchor=\"end\" x=\"%.1f\" y=\"142\">1: the yardstick</text>\n", left + scale, left + scale, left + scale
    printf "<text class=\"unit\" x=\"%d\" y=\"40\">%s; all of it: %.2f</text>\n", left, up[picture], total
}

END {
    head()
    if (picture == "start") bar()
    else {
        axes()
        for (c = 1; c <= curves; c++) draw_curve(c)
    }
    print "</svg>"
}
