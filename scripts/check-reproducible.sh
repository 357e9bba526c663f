#!/usr/bin/env bash
# Builds the last commit twice, in folders with names of different lengths and one after the other, and compares every
# finished file, the zip among them.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

EnsurePackages
export CCACHE_DISABLE=1
place="$(mktemp -d)"
trap 'rm -rf "$place"' EXIT
for folder in first another-one; do
    git clone --quiet "$ROOT" "$place/$folder"
    Step "build-$folder" "$place/$folder/scripts/build.sh"
    (cd "$place/$folder/build" && find dist zip -type f | sort | xargs -d '\n' sha256sum) >"$place/$folder.sums"
done
if ! diff "$place/first.sums" "$place/another-one.sums"; then
    echo "two builds of one commit differ" >&2
    exit 1
fi
echo "two builds of one commit: the same bytes in $(wc -l <"$place/first.sums") files"
