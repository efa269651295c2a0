# What the measuring scripts share: inputs made from the samples, and timing. Sourced, not run, after
# scripts/common.sh; the caller has set `work`, a directory for the inputs, and `batch`, the program.

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

seconds() { # command...: wall time of one run, its output discarded
    local begin end
    begin=$(date +%s%N)
    "$@" >/dev/null 2>&1
    end=$(date +%s%N)
    awk -v ns=$((end - begin)) 'BEGIN { printf "%.4f\n", ns / 1e9 }'
}

median() { # file of numbers
    sort -n "$1" | awk '{ v[NR] = $1 }
        END { print NR % 2 ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'
}

# A directory in memory if there is one, so that it is not the disk that is measured.
work_directory() {
    if [ -w /dev/shm ] && [ "$(df --output=avail -k /dev/shm | tail -n 1)" -gt 2000000 ]; then
        mktemp -d -p /dev/shm
    else
        mktemp -d
    fi
}

# Runs the functions named by the arguments in turn, `runs` times, and sets median_<name>.
alternate() {
    local name i
    for name in "$@"; do : >"$work/$name.times"; done
    for i in $(seq "$runs"); do
        for name in "$@"; do seconds "$name" >>"$work/$name.times"; done
    done
    for name in "$@"; do eval "median_$name=$(median "$work/$name.times")"; done
}

peak_kib() { # command...: largest resident set
    command time -f %M "$@" 2>&1 >/dev/null | tail -n 1
}

calculate() { awk "BEGIN { printf \"$1\", $2 }"; } # format, expression
ratio() { calculate %.2f "$1 / $2"; }

kev() {
    "$batch" kev --quiet --no-progress --stamp 202601010000 --output-dir "$work/out" "$@"
}
only_area=(--set calc_rasa=0 --set calc_dpx=0 --set calc_cx=0 --set calc_hydro=0
           --set analyze_unbound=0 --set write_xml=0)
