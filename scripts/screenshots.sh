#!/usr/bin/env bash
# Takes the pictures of docs/images anew: builds the window and shows it on a virtual display.
#   scripts/screenshots.sh        light colours, as in the user guide
#   scripts/screenshots.sh dark   dark colours, into build/screenshots-dark, to look at
set -euo pipefail
source "$(dirname "$0")/common.sh"
cd "$root"

build_preset dev take_screenshots

case "${1:-}" in
dark)
    target=build/screenshots-dark
    ;;
"")
    target=docs/images
    ;;
*)
    echo "usage: scripts/screenshots.sh [dark]" >&2
    exit 2
    ;;
esac
mkdir -p "$target"

display_number=$(mktemp)
Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp 3>"$display_number" 2>/dev/null &
server=$!
trap 'kill "$server" 2>/dev/null || true; rm -f "$display_number"' EXIT
for _ in $(seq 100); do
    [ -s "$display_number" ] && break
    sleep 0.1
done

# Nothing of the user's desktop: its style, fonts and scale would show.
env -u QT_SCALE_FACTOR -u QT_STYLE_OVERRIDE -u XDG_CURRENT_DESKTOP LC_ALL=C.UTF-8 \
    QT_QPA_PLATFORM=xcb QT_QPA_PLATFORMTHEME= DISPLAY=":$(cat "$display_number")" \
    build/dev/bin/take_screenshots "$target" ${1:+"$1"}
ls "$target"/*.png
