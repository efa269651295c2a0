#!/usr/bin/env bash
# How time and memory grow with the number of atoms and of files: measures, and draws the curves of
# docs/performance.md.
#   bench/growth.sh    writes docs/images/growth-*.svg and the numbers to standard output
set -euo pipefail
source "$(dirname "$0")/../scripts/common.sh"
source "$(dirname "$0")/common.sh"
cd "$root"
runs=${RUNS:-3}

install_missing gnuplot-nox time
build_preset release kelmo-batch
batch=build/release/bin/kelmo-batch
work=$(work_directory)
trap 'rm -rf "$work"' EXIT
mkdir "$work/out"

all() { kev --jobs 1 "$work/entry.pdb"; }
area() { kev --jobs 1 "${only_area[@]}" "$work/entry.pdb"; }

echo "atoms, microseconds per atom: area, everything; peak memory of everything in MiB"
for copies in 1 2 4 8 16 32 64 128 228; do
    lattice 2hhb "$copies" 7 65 >"$work/entry.pdb"
    atoms=$(grep -c '^ATOM' "$work/entry.pdb")
    alternate area all
    peak=$(peak_kib "$batch" kev --quiet --no-progress --stamp 202601010000 --output-dir "$work/out" --jobs 1 "$work/entry.pdb")
    printf '%d %s %s %s\n' "$atoms" "$(calculate %.3f "1e6 * $median_area / $atoms")" \
        "$(calculate %.3f "1e6 * $median_all / $atoms")" "$(calculate %.1f "$peak / 1024")"
done | tee "$work/atoms.txt"

echo "files of 1UBQ, seconds per 100 files, peak memory in MiB"
mkdir "$work/many"
for files in 10 100 1000 10000; do
    for i in $(seq "$files"); do ln -sf "$root/data/samples/1ubq.pdb" "$work/many/$i.pdb"; done
    ls -d "$work"/many/* >"$work/files.fls"
    time=$(seconds kev --jobs 2 "${only_area[@]}" --list "$work/files.fls")
    peak=$(peak_kib "$batch" kev --quiet --no-progress --stamp 202601010000 --output-dir "$work/out" --jobs 2 \
        "${only_area[@]}" --list "$work/files.fls")
    printf '%d %s %s\n' "$files" "$(calculate %.3f "100 * $time / $files")" \
        "$(calculate %.1f "$peak / 1024")"
done | tee "$work/files.txt"

gnuplot <<PLOT
set terminal svg size 640,360 font "DejaVu Sans,12" background "#ffffff"
set logscale x
set grid
set key top right
set format x "10^{%L}"
set yrange [0:*]
set style line 1 lc rgb "#1b6ca8" lw 2 pt 7
set style line 2 lc rgb "#c0562f" lw 2 pt 5
set xlabel "atoms"
set output "docs/images/growth-time.svg"
set ylabel "microseconds per atom, one core"
plot "$work/atoms.txt" using 1:3 with linespoints ls 2 title "everything", \
     "$work/atoms.txt" using 1:2 with linespoints ls 1 title "area, bound"
set output "docs/images/growth-memory.svg"
set ylabel "peak memory in MiB, one core"
set yrange [10:1000]
set logscale y
set key top left
plot 60 + x * 400 / 1048576 with lines lc rgb "#999999" dt 2 title "60 MiB and 400 bytes an atom", \
     "$work/atoms.txt" using 1:4 with linespoints ls 2 title "everything"
unset logscale y
set yrange [0:*]
set key bottom right
set xlabel "files of 1UBQ in one run"
set output "docs/images/growth-files.svg"
set ylabel "peak memory in MiB, two cores"
plot "$work/files.txt" using 1:3 with linespoints ls 1 title "area, bound"
PLOT
