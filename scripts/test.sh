#!/usr/bin/env bash
# Installs what is missing, builds and runs all tests.
#   scripts/test.sh               preset dev
#   PRESET=asan scripts/test.sh   with AddressSanitizer and UndefinedBehaviorSanitizer
# Further arguments go to CTest, for example: scripts/test.sh -R AtomGrid
set -euo pipefail
source "$(dirname "$0")/common.sh"
preset=${PRESET:-dev}
cd "$root"

build_preset "$preset"

# CTest ends with its own summary; a run without any test is a failure.
exec ctest --preset "$preset" --no-tests=error --parallel "$(nproc)" "$@"
