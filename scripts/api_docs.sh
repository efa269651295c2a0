#!/usr/bin/env bash
# Makes the pages of the engine's headers, build/api/html/index.html. Ends with an error when doxygen warns
# of anything: what is public and has no words is worth a warning.
set -euo pipefail
source "$(dirname "$0")/common.sh"
cd "$root"

install_missing doxygen
mkdir -p build/api
doxygen docs/Doxyfile
