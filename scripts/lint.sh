#!/usr/bin/env bash
# Checks formatting (clang-format) and code (clang-tidy) of all C++ sources.
#   scripts/lint.sh         both
#   scripts/lint.sh format  formatting alone
# The code of a unit is checked again only when one of its files, its compile command or the checks have
# changed since it passed; build/dev/lint remembers that for 30 days.
set -euo pipefail
source "$(dirname "$0")/common.sh"
cd "$root"

install_missing clang-format clang-tidy
mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h')
clang-format --dry-run --Werror "${sources[@]}"
[ "${1:-}" = format ] && exit 0

install_missing "${build_packages[@]}" "${test_packages[@]}"
build_preset dev kelmo kelmo-batch
build=build/dev
export build passed=$build/lint
mkdir -p "$passed"
find "$passed" -type f -mtime +30 -delete

# One line for each compiled source: its path and a text that changes with its files and its command.
states_of_units() {
    local files
    files=$(ninja -C "$build" -t deps)
    sed -n 's/^    //p' <<<"$files" | sort -u | (cd "$build" && xargs sha256sum) |
        awk -v root="$root/" '
            FILENAME == "-" { sum[substr($0, 67)] = $1; next }
            /"command":/ { command = $0 }
            /"file":/ { commandOf[$2] = command }
            /^[^ ]/ { unit = "" }
            /^    \// {
                if (unit == "") unit = $1
                state[unit] = state[unit] sum[$1]
            }
            END {
                for (unit in state)
                    print substr(unit, length(root) + 1), state[unit], commandOf["\"" unit "\""]
            }' - "$build/compile_commands.json" <(echo "$files")
}

rooms='base|model|input|geometry|contacts|xml|analysis|reports|results|run|app|batch|python'
mapfile -t units < <(printf '%s\n' "${sources[@]}" | grep -E "^($rooms)/.*\.cpp$")
checks=$(clang-tidy --version; cat .clang-tidy)
declare -A state
while read -r unit text; do
    state[$unit]=$(sha256sum <<<"$checks $text")
done < <(states_of_units)

changed=()
for unit in "${units[@]}"; do
    key=${state[$unit]:?$unit is not compiled}
    [ -e "$passed/${key%% *}" ] || changed+=("$unit" "${key%% *}")
done
[ "${#changed[@]}" -gt 0 ] || exit 0
echo "Checking the code of $((${#changed[@]} / 2)) of ${#units[@]} units ..." >&2
# shellcheck disable=SC2016 # for the inner shell
printf '%s\n' "${changed[@]}" | xargs -P "$(nproc)" -n 2 sh -c \
    'clang-tidy -p "$build" --quiet "$0" && : >"$passed/$1"'
