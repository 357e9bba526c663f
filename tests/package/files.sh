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
(cd "$folder/unpacked" && sha256sum --check --strict --quiet SHA256SUMS) || Fail "a digest is wrong"
[ "$(wc -l <"$folder/unpacked/SHA256SUMS")" -eq "$(find "$folder/unpacked" -type f ! -name SHA256SUMS | wc -l)" ] ||
    Fail "SHA256SUMS leaves files out"
# What every program of g++'s has in it is in the bill of materials, with a version; so is each DLL and each program.
python3 - "$folder/unpacked" <<'END' || Fail "sbom.cdx.json lacks something"
import json, pathlib, sys
package = pathlib.Path(sys.argv[1])
bill = json.loads((package / "sbom.cdx.json").read_text())
parts = {part["bom-ref"]: part for part in bill["components"]}
uses = {entry["ref"]: entry["dependsOn"] for entry in bill["dependencies"]}
for file in sorted({*package.rglob("*.dll"), *package.rglob("*.exe")}):
    name = file.relative_to(package).as_posix()
    copied = name.startswith("demo/") and name not in parts
    if b"This is a text" in file.read_bytes()[:40] or copied or file.parent.parent.name == "agent" and file.name == "ny_simulator.dll":
        continue
    assert any(parts[used]["name"].startswith("mingw-w64") and parts[used]["version"] for used in uses[name]), name
assert any("gcc" in used or "g++" in used for used in uses["bin/VsMsgbus.dll"])
assert any("libcli11" in used for used in uses["bin/vsmsgbus.exe"])
END
[ "$(stat --format=%s "$folder/unpacked/bin/VsMsgbus.dll")" -le 400000 ] || Fail "VsMsgbus.dll is larger than 400 KB"
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
