#!/usr/bin/env bash
# Builds Kelmo and analyses the shipped sample complexes with both modules.
#   scripts/run.sh            writes reports to build/sample-reports
#   scripts/run.sh --window   opens the desktop program instead
#   PRESET=asan scripts/run.sh   the same with another preset of CMakePresets.json
set -euo pipefail
source "$(dirname "$0")/common.sh"
preset=${PRESET:-release}
cd "$root"

install_missing "${build_packages[@]}"
echo "Building (preset $preset) ..."

case "${1:-}" in
--window)
    build_preset "$preset" kelmo
    exec "build/$preset/bin/kelmo"
    ;;
"") ;;
*)
    echo "usage: scripts/run.sh [--window]" >&2
    exit 2
    ;;
esac

build_preset "$preset" kelmo-batch
reports=build/sample-reports
mkdir -p "$reports"
echo "Structure analysis (KEV) of data/samples ..."
"build/$preset/bin/kelmo-batch" kev --output-dir "$reports" data/samples/*.pdb
echo "Interaction analysis (VOR) of data/samples ..."
"build/$preset/bin/kelmo-batch" vor --output-dir "$reports" data/samples/*.pdb

echo
echo "The newest reports in $root/$reports:"
newest=$(find "$reports" -name '*.tbl' -printf '%f\n' | sed -E 's/.*_([0-9]{12})_.*/\1/' | sort | tail -n 1)
(cd "$reports" && printf '  %s\n' *_"$newest"_*)
