#!/usr/bin/env bash
# How much of the engine its tests reach. Installs what is missing, builds preset coverage, runs the
# tests of base/, model/, input/, geometry/, contacts/, xml/ and run/, prints a table for each room and ends with an
# error when less than 95 % of the lines or 85 % of the branches were reached.
#
# Branches that the compiler makes only for exceptions, and such as cannot be reached at all, are
# left out. The vectorised code of geometry/ is compiled once for each kind of processor from the
# same source: a line or branch counts as reached when one of these reached it. That the others
# compute the same is for the tests that force each of them in turn.
set -euo pipefail
source "$(dirname "$0")/common.sh"
cd "$root"
rooms=(base model input geometry contacts xml analysis reports run)
lines=95
branches=85

install_missing gcovr
programs=("${rooms[@]/%/_tests}")
build_preset coverage "${programs[@]}"

build=build/coverage
# What an earlier run has counted.
find "$build" -name '*.gcda' -delete
run_one() {
    "$build/bin/$1" --gtest_brief=1 >"$build/$1.log" 2>&1 || {
        cat "$build/$1.log" >&2
        return 1
    }
}
export -f run_one
export build
echo "Running ${programs[*]} ..."
printf '%s\n' "${programs[@]}" | xargs -P "$(nproc)" -I{} bash -c 'run_one {}'

# What else may lie in the build tree has not been built now.
objects=("${rooms[@]/#/$build/}" "${rooms[@]/#/$build/tests/}")
# Prints the report of the sources that match.
report() {
    gcovr --root . --object-directory "$build" --filter "$1" \
        --exclude-throw-branches --exclude-unreachable-branches "${@:2}" "${objects[@]}"
}
for room in "${rooms[@]}"; do
    printf '\n%s/\n' "$room"
    report "$room/" --print-summary | grep -E '^(lines|functions|branches):'
done
printf '\nAll rooms\n'
report "($(IFS='|' && echo "${rooms[*]}"))/" --print-summary \
    --fail-under-line "$lines" --fail-under-branch "$branches"
