#!/usr/bin/env bash
# files.sh SOURCES BUILD FOLDER: the package holds all headers that are shipped and the files of files.txt, and nothing
# else; the zip holds the same; the links of its pages lead somewhere, and its CHANGELOG.md has its version; and no file says
# where it was built.
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"
sources="$1" build="$2" folder="$3"

Expected() {
    sed 's/ *#.*//; /^$/d' "$sources/tests/package/files.txt"
    (cd "$sources" && find include -type f)
    find "$sources/tests/microsoft_runtime" -type f -printf 'msabi/runtime/%P\n'
    find "$sources"/{agent,simulator/include,kit/include} -name '*.h*' -printf 'agent/include/%P\n'
}
diff <(Expected | sort) <(cd "$folder/unpacked" && find . -type f ! -path './doc/*' | sed 's|^\./||' | sort) ||
    Fail "the package holds other files than expected (<)"
[ -e "$folder/unpacked/doc/index.html" ] || Fail "the package has no reference"
diff -r "$folder/installed" "$folder/unpacked" || Fail "the zip differs from what is installed"
# VERSION NUMBER: that part of the version that the headers have.
Version() {
    sed -n "s/^#define VSMSGBUS_VERSION_$1 \([0-9]*\).*/\1/p" "$folder/unpacked/include/VsMsgbus/Version.h"
}
version="$(Version MAJOR).$(Version MINOR).$(Version PATCH)"
awk -v heading="## $version" '$0 == heading {isInside = 1; next} /^## / {isInside = 0} isInside && /^- / {count++}
    END {exit count ? 0 : 1}' "$folder/unpacked/CHANGELOG.md" || Fail "CHANGELOG.md says nothing of $version"
grep -qF "VsMsgbus-$version-win64" "$folder/unpacked/guides/GETTING_STARTED.md" || Fail "the first guide names another version"
"$sources/scripts/check-links.py" "$folder/unpacked"
if grep -rlF -e "$build" -e "$sources" "$folder/unpacked"; then
    Fail "these files say where they were built"
fi
Passed
