#!/usr/bin/env bash
# Checks formatting (clang-format) and code (clang-tidy) of all C++ sources.
#   scripts/lint.sh         both
#   scripts/lint.sh format  formatting alone
set -euo pipefail
source "$(dirname "$0")/common.sh"
cd "$root"

install_missing clang-format clang-tidy
mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h')
clang-format --dry-run --Werror "${sources[@]}"
[ "${1:-}" = format ] && exit 0

build_preset dev
mapfile -t units < <(printf '%s\n' "${sources[@]}" | grep -E '^(base|model|input|geometry|contacts|xml|analysis|reports|run|app|batch)/.*\.cpp$')
printf '%s\n' "${units[@]}" | xargs -P "$(nproc)" -n 1 clang-tidy -p build/dev --quiet
