#!/usr/bin/env bash
# Runs kelmo-batch, built with AddressSanitizer and UndefinedBehaviorSanitizer, over mutated pieces of
# the samples: every attribute and every criterion, many files at a time. Ends with an error when the
# program ends otherwise than documented for bad files, a sanitizer speaks up, a file gets only a part
# of its reports, or a report is no XML.
#   scripts/mutate.sh           10000 mutations
#   scripts/mutate.sh 500       fewer
#   scripts/mutate.sh 100 4200  the 100 that begin with number 4200
# A mutation's number makes it anew; what was at fault is kept in build/mutate-findings.
set -euo pipefail
source "$(dirname "$0")/common.sh"
count=${1:-10000}
first=${2:-0}
per_run=100
cd "$root"

build_preset asan kelmo-batch mutate_samples

memory=/dev/shm
[ -w "$memory" ] || memory=${TMPDIR:-/tmp}
scratch=$(mktemp -d "$memory/kelmo-mutate-XXXXXX")
trap 'rm -rf "$scratch"' EXIT
findings=$root/build/mutate-findings
rm -rf "$findings"
export ASAN_OPTIONS=abort_on_error=0 UBSAN_OPTIONS=print_stacktrace=1

fail() {
    mkdir -p "$findings"
    cp -r "$scratch/." "$findings"
    echo "$1" >&2
    echo "The files, reports and messages: $findings" >&2
    exit 1
}

# Names that XML must escape are written as they are in interaction reports, which are no XML then.
has_plain_names() {
    ! LC_ALL=C grep -qaE $'[&<>\x01-\x08\x0b\x0c\x0e-\x1f\x7f-\xff]' "$1" &&
        [ "$(tr -d '\000' <"$1" | wc -c)" -eq "$(wc -c <"$1")" ]
}

# run_all FIRST MODULE REPORTS OPTION...: one module over all files; REPORTS of them for each file.
run_all() {
    local number=$1 module=$2 reports=$3 status=0 documents=() without=0 base written file
    shift 3
    rm -rf "$scratch/reports"
    mkdir "$scratch/reports"
    build/asan/bin/kelmo-batch "$module" "$@" --stamp 202001010000 --jobs 2 --no-progress \
        --output-dir "$scratch/reports" "$scratch"/input/*.pdb >"$scratch/messages" 2>&1 || status=$?
    [ "$status" -le 1 ] || fail "Mutations from $number: kelmo-batch $module $* ended with $status"
    if grep -qE 'Sanitizer|runtime error' "$scratch/messages"; then
        fail "Mutations from $number: kelmo-batch $module $*: a sanitizer spoke up"
    fi
    for file in "$scratch"/input/*.pdb; do
        base=$(basename "$file" .pdb)
        written=("$scratch/reports/${base}"_*)
        if [ ! -e "${written[0]}" ]; then
            without=$((without + 1))
            continue
        fi
        analysed=$((analysed + 1))
        [ "${#written[@]}" -eq "$reports" ] || fail "${base}: not all reports of kelmo-batch $module $*"
        if [ "$module" = kev ] || has_plain_names "$file"; then
            documents+=("$scratch/reports/${base}"_*.xml)
        fi
    done
    [ "$(grep -cE 'There was an error in PDB file|No atoms found in PDB file' "$scratch/messages")" \
        -eq "$without" ] || fail "Mutations from $number: not a message for every refused file"
    [ "$status" -eq $((without > 0)) ] || fail "Mutations from $number: exit status $status"
    refused=$((refused + without))
    [ -z "$(find "$scratch/reports" -name '.*.part')" ] || fail "Mutations from $number: a half-written report"
    [ "${#documents[@]}" -eq 0 ] || xmllint --noout "${documents[@]}" 2>"$scratch/xmllint" ||
        fail "Mutations from $number: a report of kelmo-batch $module $* is no XML"
    checked=$((checked + ${#documents[@]}))
}

analysed=0 refused=0 checked=0
for ((number = first; number < first + count; number += per_run)); do
    size=$((first + count - number < per_run ? first + count - number : per_run))
    rm -rf "$scratch/input"
    mkdir "$scratch/input"
    build/asan/bin/mutate_samples "$number" "$size" "$scratch/input"
    run_all "$number" kev 4
    for criterion in 1 2 3 4; do
        run_all "$number" vor 6 --set contact_criterion="$criterion" --set write_contacts=1
    done
    ((number % 1000 != 0)) || echo "from $number ..."
done
echo "$count mutations in 5 analyses each: $analysed analysed, $refused refused with a message," \
    "$checked XML reports well-formed. Nothing found."
