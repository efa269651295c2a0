#!/usr/bin/env bash
# Builds Kelmo and analyses the shipped sample complexes with both modules.
#   scripts/run.sh            writes reports to build/sample-reports
#   scripts/run.sh --window   opens the desktop program instead
#   PRESET=asan scripts/run.sh   the same with another preset of CMakePresets.json
set -euo pipefail
source "$(dirname "$0")/common.sh"
preset=${PRESET:-release}
cd "$root"

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
stamp=$(date +%Y%m%d%H%M)
mkdir -p "$reports"
echo "Structure analysis (KEV) of data/samples ..."
"build/$preset/bin/kelmo-batch" kev --stamp "$stamp" --output-dir "$reports" data/samples/*.pdb
echo "Interaction analysis (VOR) of data/samples ..."
"build/$preset/bin/kelmo-batch" vor --stamp "$stamp" --output-dir "$reports" data/samples/*.pdb

echo
echo "The reports are in $root/$reports:"
(cd "$reports" && printf '  %s\n' *_"$stamp"_*)
