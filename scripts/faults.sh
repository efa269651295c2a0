#!/usr/bin/env bash
# Faults that a test cannot count on being able to make everywhere: kills at many moments, a disk that
# is really full or becomes read-only, failing calls of the system, ten thousand files, little memory.
#   scripts/faults.sh                 everything, as root (for mounting)
#   scripts/faults.sh kills memory    some of: kills disks calls many memory
#   KILLS=100 SEED=1 MANY=10000       how many kills, at which moments; how many files
set -euo pipefail
source "$(dirname "$0")/common.sh"
cd "$root"
kills=${KILLS:-100}
seed=${SEED:-1}
many=${MANY:-10000}
preset=${PRESET:-release}

install_missing strace time
build_preset "$preset" kelmo-batch
batch=$root/build/$preset/bin/kelmo-batch
work=$(mktemp -d)
mounted=
clean_up() {
    [ -z "$mounted" ] || umount "$mounted"
    rm -rf "$work"
}
trap clean_up EXIT
failures=0

fail() {
    echo "FAILED: $*" >&2
    failures=$((failures + 1))
}

# The names of a pattern, one a line; none when nothing matches.
names() { find "$1" -maxdepth 1 -type f "${@:2}" -printf '%f\n' | sort; }

# A report that stands in a directory under its final name must be that of the whole run.
expect_whole_reports() { # what, directory, directory of the whole run
    local name
    while read -r name; do
        cmp -s "$2/$name" "$3/$name" || fail "$1: $name is not whole"
    done < <(names "$2" ! -name '.kelmo-*')
}

expect_same() { # what, directory, directory of the whole run
    diff -rq "$2" "$3" >&2 || fail "$1: not the reports of an uninterrupted run"
}

# files, code, directory: that many links to a sample
link_sample() {
    local i
    mkdir -p "$3"
    for i in $(seq "$1"); do ln -s "$root/data/samples/$2.pdb" "$3/$2-$i.pdb"; done
}

run() { # module, output directory, arguments...
    "$batch" "$1" --quiet --stamp 202001010000 --output-dir "$2" "${@:3}"
}

# --- kills --------------------------------------------------------------------------------------

kill_runs() {
    local module i whole out pid seconds moment status killed runs=0 parts=0
    link_sample 20 1ubq "$work/kill-in"
    link_sample 10 1a0q "$work/kill-in"
    RANDOM=$seed
    for module in kev vor; do
        whole=$work/kill-whole-$module
        mkdir "$whole"
        run "$module" "$whole" "$work"/kill-in/*.pdb
        seconds=$(date +%s%N)
        rm "$whole"/*
        run "$module" "$whole" "$work"/kill-in/*.pdb
        seconds=$(($(date +%s%N) - seconds))
        killed=0
        for ((i = 1; killed < (kills + 1) / 2; ++i)); do
            out=$work/kill-out
            rm -rf "$out"
            mkdir "$out"
            # Not by run(): the process to be killed would be its shell.
            "$batch" "$module" --quiet --stamp 202001010000 --output-dir "$out" \
                --jobs $((1 + i % 3)) "$work"/kill-in/*.pdb &
            pid=$!
            moment=$(awk -v r="$RANDOM" -v ns="$seconds" 'BEGIN { printf "%.6f", r / 32768 * ns / 1e9 }')
            sleep "$moment"
            kill -KILL "$pid" 2>/dev/null || true
            status=0
            wait "$pid" 2>/dev/null || status=$?
            runs=$((runs + 1))
            [ "$status" -ne 137 ] || killed=$((killed + 1)) # else it had come to its end before
            parts=$((parts + $(names "$out" -name '.kelmo-*' | wc -l)))
            expect_whole_reports "kill $module $i after $moment s" "$out" "$whole"
            run "$module" "$out" --resume "$work"/kill-in/*.pdb || fail "kill $module $i: resumed run"
            expect_same "kill $module $i after $moment s" "$out" "$whole"
        done
    done
    echo "kills: $(((kills + 1) / 2 * 2)) in $runs runs;" \
        "$parts unfinished reports left behind and swept up"
}

# --- disks --------------------------------------------------------------------------------------

small_disk() { # size
    mounted=$work/disk
    mkdir -p "$mounted"
    mount -t tmpfs -o "size=$1" kelmo-faults "$mounted"
}

drop_disk() {
    umount "$mounted"
    mounted=
}

expect_told() { # what, messages, reason
    local name
    grep -q "^Could not \(write\|create\) report .*: $3\$" "$2" || fail "$1: the reason is not told"
    while read -r name; do
        grep -q "^Could not \(write\|create\) report $name: " "$2" || fail "$1: $name is not told"
    done < <(sed -n 's/^Report missing: //p' "$2")
}

disk_runs() {
    local whole=$work/disk-whole messages=$work/disk-messages status module
    link_sample 30 1ubq "$work/disk-in"
    for module in kev vor; do
        rm -rf "$whole"
        mkdir "$whole"
        run "$module" "$whole" "$work"/disk-in/*.pdb

        small_disk 700k
        status=0
        run "$module" "$mounted" "$work"/disk-in/*.pdb 2>"$messages" || status=$?
        [ "$status" -eq 1 ] || fail "full disk, $module: exit status $status"
        expect_told "full disk, $module" "$messages" "No space left on device"
        expect_whole_reports "full disk, $module" "$mounted" "$whole"
        echo "full disk, $module: $(names "$mounted" | wc -l) of $(names "$whole" | wc -l) reports" \
            "written, all whole; $(tail -n 1 "$messages")"
        mount -o remount,size=100m "$mounted"
        run "$module" "$mounted" --resume "$work"/disk-in/*.pdb || fail "full disk, $module: resumed run"
        expect_same "full disk, $module" "$mounted" "$whole"

        # Full from the beginning, with older reports of the same names on it.
        local name
        for name in $(names "$mounted"); do echo older >"$mounted/$name"; done
        head -c 100M /dev/zero >"$mounted/filler" 2>/dev/null || true
        status=0
        run "$module" "$mounted" "$work"/disk-in/*.pdb 2>"$messages" || status=$?
        [ "$status" -eq 1 ] || fail "older reports, $module: exit status $status"
        rm "$mounted/filler"
        [ "$(names "$mounted" | wc -l)" -eq "$(names "$whole" | wc -l)" ] ||
            fail "older reports, $module: names"
        for name in $(names "$mounted"); do
            [ "$(cat "$mounted/$name")" = older ] || fail "older reports, $module: $name"
        done
        drop_disk
    done
    read_only_runs "$whole" "$messages"
}

read_only_runs() { # directory of the whole vor run, messages
    local status pid
    small_disk 100m
    run vor "$mounted" "$work/disk-in/1ubq-1.pdb"
    mount -o remount,ro "$mounted"
    status=0
    run vor "$mounted" "$work"/disk-in/*.pdb 2>"$2" || status=$?
    [ "$status" -eq 2 ] || fail "read-only: exit status $status"
    grep -q ': Read-only file system$' "$2" || fail "read-only: the reason is not told"
    echo "read-only: $(cat "$2")"
    mount -o remount,rw "$mounted"

    # In the middle. A disk with a file open for writing cannot be remounted: tried until it works.
    rm "$mounted"/*
    run vor "$mounted" --jobs 1 "$work"/disk-in/*.pdb 2>"$2" &
    pid=$!
    while [ "$(names "$mounted" | wc -l)" -lt 12 ]; do :; done
    until mount -o remount,ro "$mounted" 2>/dev/null; do :; done
    status=0
    wait "$pid" || status=$?
    expect_whole_reports "read-only in the middle" "$mounted" "$1"
    [ "$status" -eq 1 ] || fail "read-only in the middle: exit status $status"
    expect_told "read-only in the middle" "$2" "Read-only file system"
    echo "read-only in the middle: $(names "$mounted" | wc -l) of $(names "$1" | wc -l) reports" \
        "written, all whole; $(tail -n 1 "$2")"
    mount -o remount,rw "$mounted"
    run vor "$mounted" --resume "$work"/disk-in/*.pdb || fail "read-only in the middle: resumed run"
    expect_same "read-only in the middle" "$mounted" "$1"
    drop_disk
}

# --- calls --------------------------------------------------------------------------------------

# Runs the program with a failing call on its unfinished reports and nowhere else. Their names have the
# number of the process, which therefore waits for the tracer.
run_with_fault() { # fault, module, output directory, messages
    local pid i paths=()
    sh -c 'kill -STOP $$; exec "$0" "$@"' "$batch" "$2" --quiet --jobs 1 --stamp 202001010000 \
        --output-dir "$3" data/samples/1ubq.pdb 2>"$4" &
    pid=$!
    for i in $(seq 0 9); do paths+=(-P "$3/.kelmo-$pid-$i.part"); done
    until grep -q '^State:.*stopped' "/proc/$pid/status"; do sleep 0.01; done
    strace -f -qq -o "$work/calls" -e trace=openat,write,writev,rename,close "${paths[@]}" \
        -e "inject=$1" -p "$pid" &
    until grep -q '^TracerPid:.*[1-9]' "/proc/$pid/status"; do sleep 0.01; done
    kill -CONT "$pid"
    wait "$pid"
}

call_runs() {
    local whole=$work/call-whole out=$work/call-out messages=$work/call-messages
    local fault module name status lost runs=0 told=0
    for module in kev vor; do
        rm -rf "$whole"
        mkdir "$whole"
        run "$module" "$whole" data/samples/1ubq.pdb
        # The first openat and close are those of the trial before the run.
        for fault in openat:error=ENOSPC:when=2 openat:error=EMFILE:when=4+ write:error=ENOSPC:when=1+ \
            write:error=EIO:when=2 write,writev:error=EDQUOT:when=3+ rename:error=EROFS:when=1 \
            rename:error=EIO:when=2+ close:error=EIO:when=2 close:error=ENOSPC:when=3; do
            rm -rf "$out"
            mkdir "$out"
            for name in $(names "$whole"); do echo older >"$out/$name"; done
            status=0
            run_with_fault "$fault" "$module" "$out" "$messages" || status=$?
            runs=$((runs + 1))
            grep -q INJECTED "$work/calls" || fail "$module $fault: no call failed"
            lost=0
            for name in $(names "$out"); do
                if [ "$(cat "$out/$name")" = older ]; then
                    lost=$((lost + 1))
                    grep -q "^Could not \(write\|create\) report $out/$name: " "$messages" ||
                        fail "$module $fault: $name is not told"
                else
                    cmp -s "$out/$name" "$whole/$name" || fail "$module $fault: $name is not whole"
                fi
            done
            [ "$lost" -gt 0 ] || fail "$module $fault: no report was lost"
            [ "$(names "$out")" = "$(names "$whole")" ] || fail "$module $fault: files left behind"
            [ "$status" -eq 1 ] || fail "$module $fault: exit status $status"
            told=$((told + lost))
        done
    done
    echo "calls: $told reports could not be written in $runs runs, each told with its reason," \
        "its older one kept"
}

# --- many files ---------------------------------------------------------------------------------

watch_process() { # process, file: lines of descriptors and threads while it lives
    while [ -d "/proc/$1/fd" ]; do
        echo "$(ls "/proc/$1/fd" 2>/dev/null | wc -l) $(ls "/proc/$1/task" 2>/dev/null | wc -l)"
        sleep 0.05
    done >"$2"
}

many_runs() {
    local files pid out=$work/many-out
    link_sample "$many" 1ubq "$work/many-in"
    find "$work/many-in" -name '*.pdb' | sort >"$work/$many.fls"
    head -n 100 "$work/$many.fls" >"$work/100.fls"
    for files in 100 "$many"; do
        rm -rf "$out"
        mkdir "$out"
        command time -f %M -o "$work/peak-$files" "$batch" kev --quiet --jobs 2 --set calc_rasa=0 \
            --set calc_dpx=0 --set calc_cx=0 --set calc_hydro=0 --set analyze_unbound=0 \
            --set write_xml=0 --output-dir "$out" --list "$work/$files.fls" &
        pid=$!
        sleep 0.2
        watch_process "$(pgrep -P "$pid" | head -n 1)" "$work/watched-$files"
        wait "$pid"
        echo "$files files: peak memory $(cat "$work/peak-$files") KiB, descriptors at most" \
            "$(sort -n "$work/watched-$files" | tail -n 1 | cut -d' ' -f1), threads at most" \
            "$(sort -n -k 2 "$work/watched-$files" | tail -n 1 | cut -d' ' -f2)"
    done
    awk -v few="$(cat "$work/peak-100")" -v many="$(cat "$work/peak-$many")" \
        'BEGIN { printf "ratio of peak memory %.3f\n", many / few; exit many > 1.05 * few }' ||
        fail "peak memory follows the number of files"
}

# --- memory -------------------------------------------------------------------------------------

memory_runs() {
    local limit out=$work/memory-out messages=$work/memory-messages status jobs
    awk 'BEGIN { for (i = 0; i < 200000; ++i)
        printf "ATOM  %5d  CA  GLY A%4d    %8.3f%8.3f%8.3f\n", i % 100000, i % 10000,
            i % 100 * 4, int(i / 100) % 100 * 4, int(i / 10000) * 4
        print "END" }' >"$work/huge.pdb"
    for jobs in 1 2; do
        # From hardly enough to start with, through not enough for the large file, to enough.
        for limit in $(seq 90 15 315); do
            rm -rf "$out"
            mkdir "$out"
            status=0
            prlimit --as=$((limit << 20)) "$batch" kev --quiet --jobs "$jobs" --output-dir "$out" \
                data/samples/1ubq.pdb "$work/huge.pdb" data/samples/1a0q.pdb 2>"$messages" || status=$?
            case $status in
            0) [ "$(names "$out" | wc -l)" -eq 12 ] || fail "memory, $limit MiB, $jobs jobs: reports" ;;
            1) grep -q "^Not enough memory for PDB file $work/huge.pdb\$" "$messages" ||
                fail "memory, $limit MiB, $jobs jobs: $(cat "$messages")" ;;
            *) fail "memory, $limit MiB, $jobs jobs: exit status $status: $(cat "$messages")" ;;
            esac
            echo "memory, $limit MiB, $jobs jobs: exit status $status, $(names "$out" | wc -l) reports," \
                "$(tail -n 1 "$messages")"
        done
    done
}

for what in "${@:-kills disks calls many memory}"; do
    for one in $what; do
        case $one in
        kills) kill_runs ;;
        disks) disk_runs ;;
        calls) call_runs ;;
        many) many_runs ;;
        memory) memory_runs ;;
        *) echo "Unknown: $one" >&2 && exit 2 ;;
        esac
    done
done
[ "$failures" -eq 0 ] && echo "All as it should be." || { echo "$failures failures" >&2; exit 1; }
