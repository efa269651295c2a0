#!/usr/bin/env bash
# Makes data/samples/: three public PDB entries, reduced to the records that Kelmo reads.
#
# The entries come from the test data of two Debian packages, which are installed when missing
# (that needs root or sudo; with the packages present no privilege is needed). Running the script
# again gives the same files.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
target="$root/data/samples"

freesasa_tests=/usr/share/freesasa/test-data
emboss_tests=/usr/share/EMBOSS/test/data/structure

install_packages() {
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        as_root=(sudo)
    fi
    "${as_root[@]}" apt-get update
    "${as_root[@]}" apt-get install -y --no-install-recommends "$@"
}

missing=()
if [ ! -r "$freesasa_tests/1a0q.pdb" ] || [ ! -r "$freesasa_tests/1ubq.pdb" ]; then
    missing+=(freesasa)
fi
if [ ! -r "$emboss_tests/2hhb.ent" ]; then
    missing+=(emboss-test)
fi
if [ "${#missing[@]}" -gt 0 ]; then
    install_packages "${missing[@]}"
fi

# reduce_entry SOURCE CODE: keeps HEADER, ATOM, HETATM, TER and END and changes nothing in them,
# with two exceptions. The reader takes the entry's name from offset 62 of a HEADER of at least 66
# columns, so a HEADER without the code there gets it (and a missing HEADER is written); and a file
# that lacks the closing END gets one.
reduce_entry() {
    local source=$1 code=$2
    awk -v code="$code" '
        function with_code(line) {
            if (length(line) >= 66 && substr(line, 63, 4) == code) {
                return line
            }
            return sprintf("%-62.62s%s%s", line, code, substr(line, 67))
        }
        BEGIN { header_seen = 0; end_seen = 0 }
        end_seen { next }
        { record = substr($0, 1, 6); sub(/ +$/, "", record) }
        record == "HEADER" { header_seen = 1; print with_code($0); next }
        record == "ATOM" || record == "HETATM" || record == "TER" || record == "END" {
            if (!header_seen) {
                header_seen = 1
                print with_code("HEADER")
            }
            print
            end_seen = (record == "END")
        }
        END { if (!end_seen) { print "END" } }
    ' "$source"
}

mkdir -p "$target"
staging=$(mktemp -d)
trap 'rm -rf "$staging"' EXIT
reduce_entry "$freesasa_tests/1a0q.pdb" 1A0Q > "$staging/1a0q.pdb"
reduce_entry "$freesasa_tests/1ubq.pdb" 1UBQ > "$staging/1ubq.pdb"
reduce_entry "$emboss_tests/2hhb.ent" 2HHB > "$staging/2hhb.pdb"
for entry in 1a0q 1ubq 2hhb; do
    install -m 644 "$staging/$entry.pdb" "$target/$entry.pdb"
    echo "$entry.pdb: $(grep -c '^ATOM' "$target/$entry.pdb") atoms"
done
