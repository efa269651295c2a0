#!/usr/bin/env bash
# Kelmo beside FreeSASA, and beside itself with other numbers of cores and atoms: the table of
# docs/performance.md. Everything is measured as ratios of medians of alternating runs in this one
# session; absolute times depend on the machine and on who else uses it.
#   bench/compare.sh            7 runs each
#   RUNS=1 bench/compare.sh     once each: does it work, is the output right
#   SMALL=1                     small inputs, for the same purpose
#   BUILD=directory             programs that are built already
set -euo pipefail
source "$(dirname "$0")/../scripts/common.sh"
source "$(dirname "$0")/common.sh"
cd "$root"
runs=${RUNS:-7}
small=${SMALL:-}
build=${BUILD:-}

if [ -z "$build" ]; then
    install_missing freesasa time
    build_preset bench kelmo-batch kelmo_benchmarks
    build=build/bench
fi
batch=$build/bin/kelmo-batch
work=$(work_directory)
trap 'rm -rf "$work"' EXIT

# --- inputs -------------------------------------------------------------------------------------

copies_large=5 copies_larger=23 files=500 copies_million=228 many=10000
[ -z "$small" ] || { copies_large=1 copies_larger=1 files=20 copies_million=5 many=200; }
lattice 2hhb "$copies_large" 2 65 >"$work/large.pdb"
lattice 2hhb "$copies_larger" 3 65 >"$work/larger.pdb"
mkdir "$work/batch" "$work/out"
for i in $(seq -w "$files"); do cp data/samples/1ubq.pdb "$work/batch/ubq$i.pdb"; done

row() { printf '%-66s %10s %10s %8s   %s\n' "$@"; }

freesasa_large() { freesasa --lee-richards --resolution=27 --n-threads=1 --radius-from-occupancy --no-warnings "$work/large.pdb"; }
area_large() { kev --jobs 1 "${only_area[@]}" "$work/large.pdb"; }
all_large() { kev --jobs 1 "$work/large.pdb"; }
all_large_2() { kev --jobs 2 "$work/large.pdb"; }
area_large_2() { kev --jobs 2 "${only_area[@]}" "$work/large.pdb"; }
all_larger() { kev --jobs 1 "$work/larger.pdb"; }
all_larger_2() { kev --jobs 2 "$work/larger.pdb"; }
area_larger() { kev --jobs 1 "${only_area[@]}" "$work/larger.pdb"; }
area_larger_2() { kev --jobs 2 "${only_area[@]}" "$work/larger.pdb"; }
all_batch() { kev --jobs 1 "$work"/batch/*.pdb; }
all_batch_2() { kev --jobs 2 "$work"/batch/*.pdb; }

# --- is the output right ------------------------------------------------------------------------

# The same reports from one core and from two, and an area that agrees with FreeSASA's, which slices
# as finely but elsewhere.
for jobs in 1 2; do
    mkdir "$work/jobs$jobs"
    "$batch" kev --quiet --no-progress --stamp 202601010000 --jobs "$jobs" \
        --output-dir "$work/jobs$jobs" "$work/large.pdb" "$work"/batch/*.pdb
done
diff -rq "$work/jobs1" "$work/jobs2" || { echo "The reports depend on the number of jobs" >&2; exit 1; }
area=$(awk '/^total ASA:/ { print $3; exit }' "$work/jobs1/large_202601010000_bound.tbl")
freesasa_area=$(freesasa_large | awk '/^Total/ { print $3; exit }')
awk "BEGIN { exit !($area > 0.98 * $freesasa_area && $area < 1.02 * $freesasa_area) }" ||
    { echo "Areas differ: $area and $freesasa_area" >&2; exit 1; }

# --- one entry, cores, batches ------------------------------------------------------------------

atoms=$(grep -c '^ATOM' "$work/large.pdb")
atoms_larger=$(grep -c '^ATOM' "$work/larger.pdb")
echo "Entries of $atoms and $atoms_larger atoms (2HHB on a lattice); batch of $files x 1UBQ; medians of $runs alternating runs"
echo "Reports of --jobs 1 and 2 identical; total area $(calculate %+.2f "100 * ($area / $freesasa_area - 1)") % of FreeSASA's"
echo
row "measured" "s" "against s" "ratio" "wanted"
alternate freesasa_large area_large all_large
row "1 area, bound, one table, against FreeSASA L&R 27" "$median_area_large" "$median_freesasa_large" \
    "$(ratio "$median_freesasa_large" "$median_area_large")" "at least 6 times faster"
row "2 everything, four reports, against the same" "$median_all_large" "$median_freesasa_large" \
    "$(ratio "$median_freesasa_large" "$median_all_large")" "at least 2 times faster"
alternate all_large all_large_2 area_large area_large_2
row "3 everything, $atoms atoms, --jobs 2 against 1" "$median_all_large_2" "$median_all_large" \
    "$(ratio "$median_all_large" "$median_all_large_2")" "at least 1.8"
row "3 area alone, $atoms atoms, --jobs 2 against 1" "$median_area_large_2" "$median_area_large" \
    "$(ratio "$median_area_large" "$median_area_large_2")" "at least 1.8"
alternate all_larger all_larger_2 area_larger area_larger_2
row "3 everything, $atoms_larger atoms, --jobs 2 against 1" "$median_all_larger_2" "$median_all_larger" \
    "$(ratio "$median_all_larger" "$median_all_larger_2")" "at least 1.8"
row "3 area alone, $atoms_larger atoms, --jobs 2 against 1" "$median_area_larger_2" "$median_area_larger" \
    "$(ratio "$median_area_larger" "$median_area_larger_2")" "at least 1.8"
alternate all_batch all_batch_2
row "3 everything, $files files, --jobs 2 against 1" "$median_all_batch_2" "$median_all_batch" \
    "$(ratio "$median_all_batch" "$median_all_batch_2")" "at least 1.9"

# --- growth -------------------------------------------------------------------------------------

lattice 2hhb 2 2 65 >"$work/small.pdb"
lattice 2hhb "$copies_million" 7 65 >"$work/million.pdb"
area_small() { for _ in $(seq 20); do kev --jobs 1 "${only_area[@]}" "$work/small.pdb"; done; }
area_million() { kev --jobs 1 "${only_area[@]}" "$work/million.pdb"; }
alternate area_small area_million
atoms_small=$(grep -c '^ATOM' "$work/small.pdb")
atoms_million=$(grep -c '^ATOM' "$work/million.pdb")
per_small=$(calculate %.3f "1e6 * $median_area_small / 20 / $atoms_small")
per_million=$(calculate %.3f "1e6 * $median_area_million / $atoms_million")
row "4 microseconds per atom, $atoms_million atoms against $atoms_small" "$per_million" "$per_small" \
    "$(ratio "$per_million" "$per_small")" "at most 1.3"

peak=$(peak_kib "$batch" kev --quiet --no-progress --stamp 202601010000 --output-dir "$work/out" --jobs 1 "$work/million.pdb")
row "4 peak memory, bytes per atom above 60 MiB, everything" \
    "$(calculate %.0f "($peak - 61440) * 1024 / $atoms_million")" "" "" "at most 400"

mkdir "$work/many"
for i in $(seq "$many"); do ln -s "$root/data/samples/1ubq.pdb" "$work/many/$i.pdb"; done
ls -d "$work"/many/* >"$work/many.fls"
head -n 100 "$work/many.fls" >"$work/few.fls"
peak_few=$(peak_kib "$batch" kev --quiet --no-progress --stamp 202601010000 --output-dir "$work/out" --jobs 2 "${only_area[@]}" --list "$work/few.fls")
peak_many=$(peak_kib "$batch" kev --quiet --no-progress --stamp 202601010000 --output-dir "$work/out" --jobs 2 "${only_area[@]}" --list "$work/many.fls")
row "4 peak memory in KiB, $many files against 100" "$peak_many" "$peak_few" \
    "$(ratio "$peak_many" "$peak_few")" "at most 1.1"

# --- criteria, reading and writing --------------------------------------------------------------

# One program, one core, its repetitions interleaved.
filter='^(readAssembly|maximumDistanceContacts|prismContacts|vordaContacts|boundSurface|dovreth.*)/copies:32|^readSample|^write.*Report'
program=$(realpath "$build/bin/kelmo_benchmarks")
(cd "$work" && taskset -c 0 "$program" --benchmark_filter="$filter" \
    --benchmark_repetitions=$((runs > 1 ? runs : 2)) --benchmark_min_time="$([ -n "$small" ] && echo 0.001 || echo 0.1)" \
    --benchmark_enable_random_interleaving=true --benchmark_report_aggregates_only=true \
    --benchmark_format=json) >"$work/benchmarks.json" 2>/dev/null
benchmark() { # name, quantity: of the medians
    awk -v name="$1" -v quantity="\"$2\":" '{ gsub(/,$/, "") }
        $1 == "\"name\":" { is_wanted = $2 ~ "^\"" name "[/_].*_median\"$" || $2 == "\"" name "_median\"" }
        is_wanted && $1 == quantity { print $2; found = 1 }
        END { exit !found }' "$work/benchmarks.json"
}
reading=$(benchmark readAssembly real_time)
for criterion in maximumDistance prism vorda; do
    search=$(benchmark "${criterion}Contacts" real_time)
    row "5 $criterion against reading, 64 chains of 101856 atoms, ms" \
        "$(calculate %.1f "$search")" "$(calculate %.1f "$reading")" \
        "$(ratio "$search" "$reading")" "at most 3"
done
surface=$(benchmark boundSurface real_time)
dovreth=$(benchmark dovrethWithBoundSurface real_time)
row "5 ASA change with its bound areas against one bound surface, ms" \
    "$(calculate %.1f "$dovreth")" "$(calculate %.1f "$surface")" \
    "$(ratio "$dovreth" "$surface")" "at most 2.5"
for step in readSample writeXmlReport writeTableReport; do
    row "6 $step, MB/s" "$(calculate %.0f "$(benchmark "$step" bytes_per_second) / 1e6")" "" "" "at least 100"
done
