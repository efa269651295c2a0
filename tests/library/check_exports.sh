#!/usr/bin/env bash
# check_exports.sh LIBRARY: fails unless it has a version in its name and opens what public headers declare,
# and nothing else of the engine.
set -euo pipefail
library=$1
fail() {
    echo "$library: $*" >&2
    exit 1
}

readelf --dynamic "$library" | grep -q 'SONAME.*\[libkelmo\.so\.[0-9]*\]' || fail "has no version in its name"
opened=$(nm --dynamic --demangle --defined-only "$library")
for name in 'kelmo::readStructure(' 'kelmo::attributes(' 'kelmo::columnsOf(' 'typeinfo for kelmo::cUsageError'; do
    grep -qF "$name" <<<"$opened" || fail "does not open $name"
done
for name in 'kelmo::cSurfaceKernel::' 'kelmo::cMaximumDistanceTest' 'gemmi::' 'tao::pegtl'; do
    ! grep -F "$name" <<<"$opened" >&2 || fail "opens $name"
done
# Templates of the standard library may be shared; functions of others may not be taken for theirs.
! grep -E '^[0-9a-f]+ [TBDR] ' <<<"$opened" | grep -vE ' (typeinfo (name )?for |vtable for |guard variable for )?kelmo::' >&2 ||
    fail "opens what is not the engine's"
