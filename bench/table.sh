# shellcheck shell=bash
# The table that bench/run fills, row by row, and prints. Sourced by bench/run.

table=${scratch:?}/table

# summary NAME UNIT [DIGITS]: reads "VALUE REFERENCE [MOMENT]" of each round and keeps a row of the table: the
# median, what it lies between, and the median of the multiples. A MOMENT, in seconds of demo time, is
# told in the unit: that of the round which the median is from. The multiple has two digits behind its
# point, or DIGITS. Without any rounds there is no row.
summary() {
    awk -v name="$1" -v unit="$2" -v digits="${3:-2}" '
        function order(by, n,  i, j, k) { # the rounds, the least first
            for (i = 1; i <= n; i++) index_of[i] = i
            for (i = 2; i <= n; i++) {
                k = index_of[i]
                for (j = i - 1; j >= 1 && by[index_of[j]] > by[k]; j--) index_of[j + 1] = index_of[j]
                index_of[j + 1] = k
            }
        }
        { value[NR] = $1; ratio[NR] = $2 > 0 ? $1 / $2 : 0; moment[NR] = $3 }
        END {
            if (NR == 0) exit
            middle = int((NR + 1) / 2)
            order(value, NR)
            at = index_of[middle]
            least = value[index_of[1]]
            most = value[index_of[NR]]
            order(ratio, NR)
            times = ratio[index_of[middle]]
            printf "%s\t%s%s\t%.4g\t%.4g\t%.4g\t%s\n", name, unit,
                   (moment[at] == "" ? "" : sprintf(", %.1f s", moment[at])), value[at], least, most,
                   (times > 0 ? sprintf("%.*f", digits, times) : "-")
        }' >>"$table"
}

print_table() {
    awk -F '\t' 'BEGIN { printf "%-16s %-24s %9s  %-19s %s\n", "name", "unit", "median", "from .. to", "times" }
        { printf "%-16s %-24s %9s  %-19s %s\n", $1, $2, $3, $4 " .. " $5, $6 }' "$table"
}

print_json() {
    awk -F '\t' '
        BEGIN { printf "[" }
        { printf "%s\n  {\"name\": \"%s\", \"unit\": \"%s\", \"median\": %s, \"least\": %s, \"most\": %s, \"times\": %s}",
                 (NR > 1 ? "," : ""), $1, $2, $3, $4, $5, ($6 == "-" ? "null" : $6) }
        END { print "\n]" }' "$table"
}
