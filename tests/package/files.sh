#!/usr/bin/env bash
# files.sh SOURCES BUILD FOLDER: the package holds all headers that are shipped and the files of files.txt, and nothing
# else; the zip holds the same; and no file says where it was built.
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"
sources="$1" build="$2" folder="$3"

Expected() {
    sed 's/ *#.*//; /^$/d' "$sources/tests/package/files.txt"
    (cd "$sources" && find include -type f)
    find "$sources"/{agent,simulator/include,kit/include} -name '*.h*' -printf 'agent/include/%P\n'
}
diff <(Expected | sort) <(cd "$folder/unpacked" && find . -type f ! -path './doc/*' | sed 's|^\./||' | sort) ||
    Fail "the package holds other files than expected (<)"
[ -e "$folder/unpacked/doc/index.html" ] || Fail "the package has no reference"
diff -r "$folder/installed" "$folder/unpacked" || Fail "the zip differs from what is installed"
if grep -rlF -e "$build" -e "$sources" "$folder/unpacked"; then
    Fail "these files say where they were built"
fi
Passed
