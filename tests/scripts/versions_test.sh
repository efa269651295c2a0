#!/usr/bin/env bash
# The changelog, the metadata of the desktop, the man page and the program agree on what is released.
#   versions_test.sh SOURCE_DIRECTORY VERSION PROGRAM
set -euo pipefail
cd "$1"
version=$2

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

heading=$(grep -m 1 '^## ' CHANGELOG.md)
case $heading in
'## Unreleased') [[ $version =~ ^[0-9]+\.[0-9]+\.[0-9]+-dev$ ]] || fail "unreleased, and yet version $version" ;;
"## $version ("*) [[ $version =~ ^[0-9]+\.[0-9]+\.[0-9]+$ ]] || fail "$version is no version of a release" ;;
*) fail "version $version under the heading $heading" ;;
esac

# Version and date of every release, the newest first.
told=$(sed -nE 's/^## ([0-9.]+) \(([0-9-]+)\)$/\1 \2/p' CHANGELOG.md)
shown=$(sed -nE 's/.*<release version="([^"]*)" date="([^"]*)".*/\1 \2/p' packaging/example.kelmo.kelmo.metainfo.xml)
[ "$told" = "$shown" ] || fail "released by CHANGELOG.md: ${told:-nothing}; by the metadata: ${shown:-nothing}"
headings=$(grep -c '^## ' CHANGELOG.md)
releases=$(grep -c . <<<"$told" || true)
[ "$headings" -eq "$((releases + $(grep -c '^## Unreleased$' CHANGELOG.md || true)))" ] ||
    fail "a heading of CHANGELOG.md is neither a release nor what is unreleased"
[ "$(grep -c '<release ' packaging/example.kelmo.kelmo.metainfo.xml || true)" -eq "$releases" ] ||
    fail "the metadata hold a release without version and date"

head -n 1 packaging/kelmo-batch.1 | grep -qF "\"Kelmo $version\"" || fail "another version in packaging/kelmo-batch.1"
[ "$("$3" --version)" = "kelmo-batch $version" ] || fail "$("$3" --version)"
