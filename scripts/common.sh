# What run.sh and test.sh share: installing what is missing and building a preset.
# Sourced, not run; the caller has set -euo pipefail.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Debian packages: to build and run, to test, and to fuzz.
build_packages=(g++ cmake ninja-build qt6-base-dev libqt6svg6 libgl-dev libtbb-dev libhwy-dev
                gemmi-dev tao-pegtl-dev zlib1g-dev)
test_packages=(libgtest-dev libbenchmark-dev libxml2-utils freesasa time xvfb xdotool xkb-data
               fonts-dejavu-core locales gemmi python3-prody-tests python3-csb emboss-test)
fuzz_packages=(clang libclang-rt-14-dev)

is_installed() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# Installs those of the named packages that are missing, as root or with sudo.
install_missing() {
    local missing=() package
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    [ "${#missing[@]}" -gt 0 ] || return 0
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "These packages are missing and need root to install: ${missing[*]}" >&2
            return 1
        }
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]} ..." >&2
    "${as_root[@]}" apt-get update -qq >&2
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# Configures and builds a preset of CMakePresets.json; further arguments are targets. Its output is
# shown only when something goes wrong.
build_preset() {
    local preset=$1 log
    shift
    log=$(mktemp)
    if ! { cmake --preset "$preset" -S "$root" &&
           cmake --build "$root/build/$preset" ${1:+--target "$@"}; } >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}
