#!/usr/bin/env bash
# Does everything that measures still run, and is its output right? Nothing is timed here.
#   bench/smoke.sh directory    with the programs of that build
set -euo pipefail
build=$(realpath "$1")
cd "$(dirname "$0")/.."

table=$(BUILD=$build RUNS=1 SMALL=1 bench/compare.sh)
echo "$table"
# Every one of the six points has its rows, and every row a number.
echo "$table" | awk '
    /^[1-6] / { rows[$1]++; if ($0 !~ /[0-9]+(\.[0-9]+)? +at (least|most) [0-9.]+/) { bad = $0; exit } }
    END {
        wanted = "1 1 5 3 4 3"; split(wanted, count, " ")
        for (point = 1; point <= 6; ++point) if (rows[point] != count[point]) bad = "rows of point " point
        if (bad != "") { print "Not as it should be: " bad; exit 1 } }'

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
# A benchmark that cannot do its work throws, or says so in this column.
"$build/bin/kelmo_benchmarks" --benchmark_filter=-copies:128 --benchmark_min_time=0.001 | tee benchmarks.txt
! grep -q "ERROR OCCURRED" benchmarks.txt
[ "$(grep -cE ' (ns|us|ms|s) ' benchmarks.txt)" -ge 20 ]
