#!/usr/bin/env bash
# Runs both programs in full under AddressSanitizer and LeakSanitizer: kelmo-batch with each module
# and criterion over the sample structures, the window stopped a thousand times, and the window on
# an X server from start to end, without and with a session bus. Ends with an error at the first
# leak that tests/lsan.supp does not name. Installs what is missing and builds preset asan.
set -euo pipefail
source "$(dirname "$0")/common.sh"
cd "$root"

install_missing dbus-daemon
build_preset asan

reports=$(mktemp -d)
trap 'rm -rf "$reports"' EXIT
export LSAN_OPTIONS="suppressions=$root/tests/lsan.supp"
batch() {
    echo "kelmo-batch $*"
    build/asan/bin/kelmo-batch "$@" --quiet --output-dir "$reports" data/samples/*.pdb
}
for jobs in 1 4; do
    batch kev --jobs "$jobs"
    for criterion in 1 2 3 4; do
        batch vor --jobs "$jobs" --set "contact_criterion=$criterion"
    done
done
ctest --preset asan --no-tests=error -R '^app\.(stop_test|end_to_end_test)$'
echo "With a session bus:"
KELMO_TEST_WITH_SESSION_BUS=1 dbus-run-session -- \
    ctest --preset asan --no-tests=error -R '^app\.end_to_end_test$'
