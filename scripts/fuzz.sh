#!/usr/bin/env bash
# Fuzzes everything that Kelmo reads: builds preset fuzz, makes the seeds and runs every fuzz target
# for a while. Ends with an error when one finds a crash, a hang, a leak, undefined behaviour or a
# broken promise, and says which input shows it.
#   scripts/fuzz.sh                      all targets, 60 s each
#   SECONDS_EACH=600 scripts/fuzz.sh     longer
#   scripts/fuzz.sh pdb_reader analysis  these targets
#   HANG_SECONDS=60 scripts/fuzz.sh      on a machine so busy that 10 s by the clock are no hang
# What was reached so far is kept in build/fuzz-corpus, so that the next run goes on from there.
set -euo pipefail
source "$(dirname "$0")/common.sh"
seconds=${SECONDS_EACH:-60}
hang=${HANG_SECONDS:-10}
cd "$root"

targets=("$@")
[ "$#" -gt 0 ] || targets=(pdb_reader mmcif_reader gzip parameter_tables contact_rules configuration window_files
    analysis)

build_preset fuzz write_fuzz_seeds "${targets[@]/#/fuzz_}"

# The targets write files for every input: in memory where that is possible.
memory=/dev/shm
[ -w "$memory" ] || memory=${TMPDIR:-/tmp}
scratch=$(mktemp -d "$memory/kelmo-fuzz-XXXXXX")
trap 'rm -rf "$scratch"' EXIT
export TEST_TMPDIR=$scratch

failed=()
for target in "${targets[@]}"; do
    corpus=$root/build/fuzz-corpus/$target
    seeds=$scratch/seeds/$target
    findings=$root/build/fuzz-findings/$target
    mkdir -p "$corpus" "$findings"
    build/fuzz/bin/write_fuzz_seeds "$target" "$seeds" >/dev/null
    echo "$target: $seconds s ..."
    if build/fuzz/bin/"fuzz_$target" -max_total_time="$seconds" -timeout="$hang" -rss_limit_mb=4096 \
        -max_len=16500 -dict="tests/fuzz/dictionaries/$target.dict" \
        -artifact_prefix="$findings/" "$corpus" "$seeds" >"$findings/log" 2>&1; then
        grep -E 'DONE|Done' "$findings/log" || true
    else
        failed+=("$target")
        grep -E 'Broken promise|ERROR|runtime error|SUMMARY|Test unit written' "$findings/log" || tail "$findings/log"
        echo "All it said: $findings/log" >&2
    fi
done

if [ "${#failed[@]}" -gt 0 ]; then
    echo "Findings in: ${failed[*]}. To see one again: build/fuzz/bin/fuzz_TARGET FILE" >&2
    exit 1
fi
echo "Nothing found."
