#!/usr/bin/env bash
# check_libraries.sh PROGRAM: fails when a program that shows nothing loads a library that does.
set -euo pipefail
loaded=$(ldd "$1")
if grep -E 'libQt6(Gui|Widgets)|libX|libxcb|libGL|libEGL|libOpenGL|libwayland|libfontconfig' <<<"$loaded"; then
    echo "$1 needs a display" >&2
    exit 1
fi
grep -q libQt6Core <<<"$loaded" || { echo "ldd says nothing of $1" >&2; exit 1; }
