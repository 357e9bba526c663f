#!/usr/bin/env bash
# make-package.sh SOURCES BUILD FOLDER: makes FOLDER anew, with the package as it is installed in FOLDER/installed and the
# unpacked zip in FOLDER/unpacked.
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"
sources="$1" build="$2" folder="$3"

rm -rf "$folder"
mkdir -p "$folder"
cmake --install "$build" --prefix "$folder/installed"
"$sources/scripts/make-zip.py" "$folder/installed" "$folder/zip"
"$sources/scripts/make-zip.py" "$folder/installed" "$folder/again"
cmp "$folder/zip/"*.zip "$folder/again/"*.zip || Fail "the zip is another one when it is made again"
unzip -q "$folder/zip/"*.zip -d "$folder/zip/unpacked"
# The zip holds one folder, so that it does not spill over the one it is unpacked in.
[ "$(find "$folder/zip/unpacked" -mindepth 1 -maxdepth 1 | wc -l)" -eq 1 ] || Fail "the zip holds more than one folder"
mv "$folder/zip/unpacked/"* "$folder/unpacked"
Passed
