#!/usr/bin/env bash
# Do the rooms include in their order only? Prints every include that is against it, or that names no file
# from the root of the tree, and ends with an error when there is one. The rooms below run/ stand on the
# standard library: there the headers of the toolkit are against the order too.
#   scripts/check_includes.sh              this tree
#   scripts/check_includes.sh DIRECTORY    another one
set -euo pipefail
cd "${1:-$(dirname "$0")/..}"

# A room and the rooms that it may include besides itself.
order='
base
model     base
input     base model
geometry  base model
xml       base
contacts  base model geometry
analysis  base model input geometry contacts
reports   base model geometry contacts analysis xml
results   base model geometry contacts analysis
run       base model geometry contacts analysis xml reports results input
app       base model geometry contacts analysis xml reports results input run
batch     base model geometry contacts analysis xml reports results input run
python    base model geometry contacts analysis xml reports results input run
'

# tests/, bench/ and the generators of data/ stand outside the order.
mapfile -t sources < <(find . \( -path ./build -o -path ./tests -o -path ./bench -o -path ./data -o -path './.*' \) \
    -prune -o \( -name '*.h' -o -name '*.cpp' \) -print | sort)
[ "${#sources[@]}" -gt 0 ] || { echo "No sources in $PWD" >&2; exit 1; }

awk -v order="$order" '
    BEGIN {
        rooms = split(order, lines, "\n")
        for (i = 1; i <= rooms; ++i) {
            count = split(lines[i], names, " ")
            if (count == 0) continue
            isRoom[names[1]] = 1
            for (j = 1; j <= count; ++j) allowed[names[1], names[j]] = 1
        }
    }
    function refuse(reason) {
        printf "%s:%d: %s: %s\n", substr(FILENAME, 3), FNR, $0, reason
        faults = 1
    }
    FNR == 1 {
        split(FILENAME, path, "/")
        room = path[2]
        if (!(room in isRoom)) refuse(room " is no room")
    }
    /^[ \t]*#[ \t]*include[ \t]*["<]/ {
        match($0, /["<][^">]*/)
        isQuoted = substr($0, RSTART, 1) == "\""
        file = substr($0, RSTART + 1, RLENGTH - 1)
        split(file, path, "/")
        if (file ~ /\.\./) refuse("not from the root of a room")
        else if (path[1] in isRoom) {
            if (!((room, path[1]) in allowed)) refuse(room " may not include " path[1])
        } else if (isQuoted && file !~ /^(ui_[a-z_]*\.h|[a-z_]*\.moc)$/) refuse("not from the root of a room")
        else if (path[1] ~ /^Q/ && !((room, "run") in allowed)) refuse(room " may not include the toolkit")
    }
    END { exit faults }
' "${sources[@]}"
