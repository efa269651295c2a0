#!/usr/bin/env bash
# scripts/check_includes.sh passes on the tree, and names every include that is against the order in
# scratch trees.
#   check_includes_test.sh SOURCE_DIRECTORY
set -euo pipefail
check=$1/scripts/check_includes.sh
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

"$check" "$1" || fail "the tree itself"

# Puts one line into a file of a scratch tree that is otherwise in order, and checks it.
check_line() { # path, line
    rm -rf "$scratch/tree"
    mkdir -p "$scratch/tree/base" "$scratch/tree/$(dirname "$1")"
    printf '// A file.\n#include <string>\n' >"$scratch/tree/base/first.h"
    printf '// A file.\n%s\n' "$2" >"$scratch/tree/$1"
    "$check" "$scratch/tree" >"$scratch/told"
}

accepted() {
    check_line "$@" || fail "refused in $1: $2: $(cat "$scratch/told")"
}

refused() {
    local told
    check_line "$1" "$2" && fail "not refused in $1: $2"
    told=$(cat "$scratch/told")
    [ "$told" = "$1:2: $2: $3" ] || fail "told of $1: $told"
}

accepted model/atoms.cpp '#include "model/atoms.h"'
accepted model/atoms.cpp '#include "base/first.h"'
accepted model/atoms.cpp '#include <vector>'
accepted model/atoms.cpp '// #include "run/above.h"'
accepted contacts/pairs.h '#include "geometry/atom_grid.h"'
accepted reports/xml_report.cpp '#include "xml/xml_writer.h"'
accepted run/worker.h '#include <QThread>'
accepted app/window.cpp '#include "ui_kelmo_main_window.h"'
accepted batch/main.cpp '#include "base/first.h"'
accepted tests/model/atoms_test.cpp '#include "app/window.h"'
accepted build/dev/generated.cpp '#include "nowhere.h"'

refused base/first.cpp '#include "model/atoms.h"' "base may not include model"
refused model/atoms.h '#include "contacts/pairs.h"' "model may not include contacts"
refused model/atoms.h '  #  include "run/worker.h"' "model may not include run"
refused model/atoms.h '#include <input/pdb_reader.h>' "model may not include input"
refused geometry/grid.cpp '#include "input/pdb_reader.h"' "geometry may not include input"
refused xml/xml_writer.h '#include "model/atoms.h"' "xml may not include model"
refused analysis/columns.cpp '#include "xml/xml_writer.h"' "analysis may not include xml"
refused analysis/columns.cpp '#include "reports/table.h"' "analysis may not include reports"
refused reports/table.cpp '#include "run/worker.h"' "reports may not include run"
refused run/worker.cpp '#include "app/window.h"' "run may not include app"
refused batch/main.cpp '#include "app/window.h"' "batch may not include app"
refused app/main.cpp '#include "batch/options.h"' "app may not include batch"
refused python/module.cpp '#include "batch/options.h"' "python may not include batch"
refused model/atoms.h '#include <QString>' "model may not include the toolkit"
refused reports/table.cpp '#include <QtCore/QString>' "reports may not include the toolkit"
refused model/atoms.cpp '#include "tests/support/atoms.h"' "not from the root of a room"
refused model/atoms.cpp '#include "atoms.h"' "not from the root of a room"
refused model/atoms.cpp '#include "../app/window.h"' "not from the root of a room"

check_line garage/car.cpp '#include <vector>' && fail "a room that the order does not know"
grep -q '^garage/car.cpp:1: .*: garage is no room$' "$scratch/told" || fail "told: $(cat "$scratch/told")"

rm -rf "$scratch/tree"
mkdir "$scratch/tree"
"$check" "$scratch/tree" 2>/dev/null && fail "a tree without sources passed"
exit 0
