#!/usr/bin/env bash
# Every name that docs/glossary.md quotes occurs in the sources, in a format's page or as a file.
#   glossary_test.sh SOURCE_DIRECTORY
set -euo pipefail
cd "$1"

mapfile -t names < <(grep -o '`[^`]*`' docs/glossary.md | tr -d '`' | sort -u)
[ "${#names[@]}" -gt 50 ] || { echo "FAILED: only ${#names[@]} names" >&2; exit 1; }

places=(docs/formats)
for room in base model input geometry contacts xml analysis reports run app batch; do
    [ ! -d "$room" ] || places+=("$room")
done
missing=0
for name in "${names[@]}"; do
    [ -e "$name" ] || grep -rqwF -- "${name#kelmo::}" "${places[@]}" || grep -rqF -- "\"$name" "${places[@]}" || {
        echo "FAILED: nothing is called $name" >&2
        missing=1
    }
done
exit "$missing"
