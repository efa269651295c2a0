# What the scripts share: installing what is missing and building a preset.
# Sourced, not run; the caller has set -euo pipefail.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Debian packages: to build and run, to test, to measure, and to fuzz.
build_packages=(g++ cmake ninja-build qt6-base-dev libqt6svg6 libgl-dev libtbb-dev libhwy-dev
                gemmi-dev tao-pegtl-dev zlib1g-dev libsqlite3-dev libssl-dev)
test_packages=(libgtest-dev libxml2-utils freesasa time xvfb xdotool xkb-data fonts-dejavu-core locales
               gemmi python3-prody-tests python3-csb emboss-test sqlite3 python3)
benchmark_packages=(libbenchmark-dev)
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

# Installs what a preset of CMakePresets.json asks for.
install_for_preset() {
    local packages=("${build_packages[@]}")
    case $1 in
    release) ;;
    bench) packages+=("${benchmark_packages[@]}") ;;
    dev) packages+=("${test_packages[@]}" "${benchmark_packages[@]}") ;;
    fuzz) packages+=("${test_packages[@]}" "${fuzz_packages[@]}") ;;
    *) packages+=("${test_packages[@]}") ;;
    esac
    install_missing "${packages[@]}"
}

# Installs what a preset asks for, configures and builds it; further arguments are targets. The output
# of the build is shown only when something goes wrong.
build_preset() {
    local preset=$1 log
    shift
    install_for_preset "$preset"
    echo "Building (preset $preset) ..." >&2
    log=$(mktemp)
    if ! { cmake --preset "$preset" -S "$root" &&
           cmake --build "$root/build/$preset" ${1:+--target "$@"}; } >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}
