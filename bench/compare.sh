#!/usr/bin/env bash
# Kelmo beside FreeSASA, and beside itself with other numbers of cores and atoms: the table of
# docs/performance.md. Everything is measured as ratios of medians of alternating runs in this one
# session; absolute times depend on the machine and on who else uses it.
#   bench/compare.sh            7 runs each
#   RUNS=1 bench/compare.sh     once each: does it work, is the output right
#   SMALL=1                     small inputs, for the same purpose
set -euo pipefail
source "$(dirname "$0")/../scripts/common.sh"
cd "$root"
runs=${RUNS:-7}
small=${SMALL:-}
preset=${PRESET:-release}

install_missing "${build_packages[@]}" freesasa time
build_preset "$preset" kelmo-batch
batch=build/$preset/bin/kelmo-batch
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# --- inputs -------------------------------------------------------------------------------------

# Copies of a sample on a cubic lattice, each under its own chain ids as far as letters go; the radius
# from the table stands in the occupancy column, where FreeSASA takes it from.
lattice() { # sample, copies, edge of the lattice in copies, distance in angstrom
    awk -v copies="$2" -v edge="$3" -v step="$4" '
        FNR == NR { if ($0 !~ /^#/ && NF) { key = substr($0, 1, 8); gsub(/ /, "", key)
                        radius[key] = substr($0, 9) + 0 } next }
        /^ATOM/ { line[++n] = substr($0, 1, 54)
                  residue = substr($0, 18, 3); atom = substr($0, 13, 4)
                  gsub(/ /, "", residue); gsub(/ /, "", atom)
                  r[n] = (residue "_" atom in radius) ? radius[residue "_" atom] : 1.6 }
        END {
            letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
            chain = 0
            for (c = 0; c < copies; ++c) {
                dx = step * (c % edge); dy = step * (int(c / edge) % edge)
                dz = step * int(c / edge / edge); last = ""
                for (i = 1; i <= n; ++i) {
                    l = line[i]; id = substr(l, 22, 1)
                    if (id != last) { chain = (chain + 1) % 26; last = id }
                    printf "%s%s%s%8.3f%8.3f%8.3f%6.2f  0.00\n", substr(l, 1, 21),
                        substr(letters, chain + 1, 1), substr(l, 23, 8), substr(l, 31, 8) + dx,
                        substr(l, 39, 8) + dy, substr(l, 47, 8) + dz, r[i] } }
            print "END" }' data/protor.radii "data/samples/$1.pdb"
}

copies_large=5 files=500 copies_million=228
[ -z "$small" ] || { copies_large=1 files=20 copies_million=5; }
lattice 2hhb "$copies_large" 2 65 >"$work/large.pdb"
mkdir "$work/batch" "$work/out"
for i in $(seq -w "$files"); do cp data/samples/1ubq.pdb "$work/batch/ubq$i.pdb"; done

# --- measuring ----------------------------------------------------------------------------------

seconds() { # command...: wall time of one run, its output discarded
    local begin end
    begin=$(date +%s%N)
    "$@" >/dev/null 2>&1
    end=$(date +%s%N)
    awk -v ns=$((end - begin)) 'BEGIN { printf "%.4f\n", ns / 1e9 }'
}

median() { sort -n "$1" | awk '{ v[NR] = $1 } END { print NR % 2 ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

# Runs the functions named by the arguments in turn and sets median_<name>.
alternate() {
    local name i
    for name in "$@"; do : >"$work/$name.times"; done
    for i in $(seq "$runs"); do
        for name in "$@"; do seconds "$name" >>"$work/$name.times"; done
    done
    for name in "$@"; do eval "median_$name=$(median "$work/$name.times")"; done
}

ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", a / b }'; }
row() { printf '%-66s %10s %10s %8s   %s\n' "$@"; }

kev() { "$batch" kev --quiet --no-progress --output-dir "$work/out" "$@"; }
only_area=(--set calc_rasa=0 --set calc_dpx=0 --set calc_cx=0 --set calc_hydro=0
           --set analyze_unbound=0 --set write_xml=0)

freesasa_large() { freesasa --lee-richards --resolution=27 --n-threads=1 --radius-from-occupancy --no-warnings "$work/large.pdb"; }
area_large() { kev --jobs 1 "${only_area[@]}" "$work/large.pdb"; }
all_large() { kev --jobs 1 "$work/large.pdb"; }
all_large_2() { kev --jobs 2 "$work/large.pdb"; }
area_large_2() { kev --jobs 2 "${only_area[@]}" "$work/large.pdb"; }
all_batch() { kev --jobs 1 "$work"/batch/*.pdb; }
all_batch_2() { kev --jobs 2 "$work"/batch/*.pdb; }

atoms=$(grep -c '^ATOM' "$work/large.pdb")
echo "Entry of $atoms atoms ($copies_large x 2HHB); batch of $files x 1UBQ; medians of $runs alternating runs"
echo
row "measured" "s" "against s" "ratio" "wanted"
alternate freesasa_large area_large all_large
row "1 area, bound, one table, against FreeSASA L&R 27" "$median_area_large" "$median_freesasa_large" \
    "$(ratio "$median_freesasa_large" "$median_area_large")" "at least 6 times faster"
row "2 everything, four reports, against the same" "$median_all_large" "$median_freesasa_large" \
    "$(ratio "$median_freesasa_large" "$median_all_large")" "at least 2 times faster"
alternate all_large all_large_2 area_large area_large_2
row "3 everything, one file, --jobs 2 against 1" "$median_all_large_2" "$median_all_large" \
    "$(ratio "$median_all_large" "$median_all_large_2")" "at least 1.8"
row "3 area alone, one file, --jobs 2 against 1" "$median_area_large_2" "$median_area_large" \
    "$(ratio "$median_area_large" "$median_area_large_2")" "at least 1.8"
alternate all_batch all_batch_2
row "3 everything, $files files, --jobs 2 against 1" "$median_all_batch_2" "$median_all_batch" \
    "$(ratio "$median_all_batch" "$median_all_batch_2")" "at least 1.9"

# --- growth -------------------------------------------------------------------------------------

lattice 2hhb 2 2 65 >"$work/small.pdb"
lattice 2hhb "$copies_million" 7 65 >"$work/million.pdb"
area_small() { for _ in $(seq 20); do kev --jobs 1 "${only_area[@]}" "$work/small.pdb"; done; }
area_million() { kev --jobs 1 "${only_area[@]}" "$work/million.pdb"; }
usual_runs=$runs
runs=$(((runs + 1) / 2))
alternate area_small area_million
runs=$usual_runs
atoms_small=$(grep -c '^ATOM' "$work/small.pdb")
atoms_million=$(grep -c '^ATOM' "$work/million.pdb")
per_small=$(awk -v t="$median_area_small" -v n="$atoms_small" 'BEGIN { printf "%.3f", 1e6 * t / 20 / n }')
per_million=$(awk -v t="$median_area_million" -v n="$atoms_million" 'BEGIN { printf "%.3f", 1e6 * t / n }')
row "4 microseconds per atom, $atoms_million atoms against $atoms_small" "$per_million" "$per_small" \
    "$(ratio "$per_million" "$per_small")" "at most 1.3"

peak_kib() { command time -f %M "$@" 2>&1 >/dev/null | tail -n 1; }
peak=$(peak_kib "$batch" kev --quiet --no-progress --jobs 1 --output-dir "$work/out" "$work/million.pdb")
row "4 peak memory, bytes per atom above 60 MiB, everything" \
    "$(awk -v k="$peak" -v n="$atoms_million" 'BEGIN { printf "%.0f", (k - 61440) * 1024 / n }')" "" "" "at most 400"

many=10000
[ -z "$small" ] || many=200
mkdir "$work/many"
for i in $(seq "$many"); do ln data/samples/1ubq.pdb "$work/many/$i.pdb" 2>/dev/null || ln -s "$root/data/samples/1ubq.pdb" "$work/many/$i.pdb"; done
ls -d "$work"/many/* >"$work/many.fls"
head -n 100 "$work/many.fls" >"$work/few.fls"
peak_few=$(peak_kib "$batch" kev --quiet --no-progress --jobs 2 "${only_area[@]}" --output-dir "$work/out" --list "$work/few.fls")
peak_many=$(peak_kib "$batch" kev --quiet --no-progress --jobs 2 "${only_area[@]}" --output-dir "$work/out" --list "$work/many.fls")
row "4 peak memory in KiB, $many files against 100" "$peak_many" "$peak_few" \
    "$(ratio "$peak_many" "$peak_few")" "at most 1.1"
