#!/usr/bin/env bash
# compare_reports.sh PROGRAM OTHER SAMPLES: fails unless two builds of the runner write the same reports.
set -euo pipefail
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
# Not into a pipe: who stops reading at the first match can break what writes.
[[ $(ldd "$2") == *libkelmo.so* ]] || { echo "$2 is not linked with libkelmo" >&2; exit 1; }
for module in kev vor; do
    for program in "$1" "$2"; do
        out=$place/$(basename "$program")
        mkdir -p "$out"
        "$program" "$module" --quiet --stamp=200703141530 --output-dir="$out" "$3/1a0q.pdb"
    done
done
[ "$(find "$place" -type f | wc -l)" -gt 4 ]
diff -r "$place/$(basename "$1")" "$place/$(basename "$2")"
