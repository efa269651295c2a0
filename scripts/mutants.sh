#!/usr/bin/env bash
# Puts faults into a copy of the sources, one at a time (tests/mutants/mutants.txt), and runs the tests
# that should catch it. Ends with an error when fewer than 95 % are caught, or when a fault no longer
# fits its file.
#   scripts/mutants.sh              all
#   scripts/mutants.sh 'contacts'   those whose name or file holds the text
# The copy with its build is kept in build/mutants, so that the next run has less to compile. What the
# tests of a survivor said is kept beside it.
set -euo pipefail
source "$(dirname "$0")/common.sh"
wanted=${1:-}
cd "$root"
list=$root/tests/mutants/mutants.txt
copy=$root/build/mutants/tree
logs=$root/build/mutants/logs
preset=dev
longest=300 # seconds; a fault may make a test wait for ever

install_for_preset "$preset"
mkdir -p "$copy"
rm -rf "$logs"
mkdir -p "$logs"
# Only what differs, so that nothing else is compiled anew.
git ls-files -z | while IFS= read -r -d '' file; do
    [ -e "$file" ] || continue
    cmp -s "$file" "$copy/$file" || install -D -m "$(stat -c %a "$file")" "$file" "$copy/$file"
done

build() { # targets...
    cmake --build "$copy/build/$preset" --target "$@"
}

run_tests() { # "program filter" each
    local test program filter
    for test in "$@"; do
        read -r program filter <<<"$test"
        # In a process group of its own: a test that hangs may have started others.
        QT_QPA_PLATFORM=offscreen timeout --kill-after=5 "$longest" \
            "$copy/build/$preset/bin/$program" --gtest_filter="$filter" --gtest_brief=1 || return 1
    done
}

# Reads the entries into arrays of equal length; lines of a text are joined by line feeds.
names=() files=() tests=() befores=() afters=()
while IFS= read -r line; do
    last=$((${#names[@]} - 1))
    case $line in
    '== '*) names+=("${line#== }") files+=('') tests+=('') befores+=('') afters+=('') ;;
    'file '*) files[last]=${line#file } ;;
    'test '*) tests[last]+=${line#test }$'\n' ;;
    '-'*) befores[last]+=${line#-}$'\n' ;;
    '+'*) afters[last]+=${line#+}$'\n' ;;
    esac
done <"$list"

# The file with the fault; fails unless the lines are there exactly once.
mutated() { # number
    local text before=${befores[$1]%$'\n'} after=${afters[$1]%$'\n'} head
    text=$(<"$root/${files[$1]}")
    head=${text%%"$before"*}
    [ "$head" != "$text" ] || return 1
    text=${text#"$head$before"}
    case $text in *"$before"*) return 1 ;; esac
    printf '%s%s%s\n' "$head" "$after" "$text"
}

echo "Building the sources without a fault ..." >&2
cmake --preset "$preset" -S "$copy" -B "$copy/build/$preset" >"$logs/configure" 2>&1 || {
    cat "$logs/configure" >&2
    exit 1
}
chosen=() all_tests=()
for i in "${!names[@]}"; do
    case "${names[i]} ${files[i]}" in *"$wanted"*) ;; *) continue ;; esac
    chosen+=("$i")
    mapfile -t those <<<"${tests[i]%$'\n'}"
    all_tests+=("${those[@]}")
done
[ "${#chosen[@]}" -gt 0 ] || {
    echo "No fault is called so." >&2
    exit 1
}
mapfile -t all_tests < <(printf '%s\n' "${all_tests[@]}" | sort -u)
mapfile -t programs < <(printf '%s\n' "${all_tests[@]}" | cut -d' ' -f1 | sort -u)
build "${programs[@]}" >"$logs/build" 2>&1 || {
    tail -n 40 "$logs/build" >&2
    exit 1
}
echo "Running the tests without a fault ..." >&2
run_tests "${all_tests[@]}" >"$logs/tests" 2>&1 || {
    tail -n 40 "$logs/tests" >&2
    echo "The tests fail without any fault." >&2
    exit 1
}

caught=0 survived=() unfit=()
for i in "${chosen[@]}"; do
    file=${files[i]}
    log=$logs/$(printf '%s' "${names[i]}" | tr -c 'A-Za-z0-9' '_')
    mapfile -t those <<<"${tests[i]%$'\n'}"
    mapfile -t programs < <(printf '%s\n' "${those[@]}" | cut -d' ' -f1 | sort -u)
    if ! mutated "$i" >"$copy/$file"; then
        unfit+=("${names[i]} ($file: the lines are not there once)")
    elif ! build "${programs[@]}" >"$log" 2>&1; then
        unfit+=("${names[i]} ($file: does not compile, see $log)")
    elif run_tests "${those[@]}" >>"$log" 2>&1; then
        survived+=("${names[i]} ($file)")
        echo "survived: ${names[i]}"
    else
        caught=$((caught + 1))
        echo "caught:   ${names[i]}"
        rm "$log"
    fi
    cp "$root/$file" "$copy/$file"
done

total=$((caught + ${#survived[@]}))
echo "$caught of $total faults caught"
[ "${#survived[@]}" -eq 0 ] || printf 'survived: %s\n' "${survived[@]}"
[ "${#unfit[@]}" -eq 0 ] || printf 'UNFIT: %s\n' "${unfit[@]}" >&2
[ "${#unfit[@]}" -eq 0 ] && [ $((caught * 100)) -ge $((total * 95)) ]
