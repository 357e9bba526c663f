#!/usr/bin/env bash
# make-package.sh BUILD FOLDER: makes FOLDER anew, with the package as it is installed in FOLDER/installed and the
# unpacked zip in FOLDER/unpacked.
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"
build="$1" folder="$2"

rm -rf "$folder"
mkdir -p "$folder"
cmake --install "$build" --prefix "$folder/installed"
cpack --config "$build/CPackConfig.cmake" -G ZIP -B "$folder/zip"
unzip -q "$folder/zip/"*.zip -d "$folder/zip/unpacked"
# The zip holds one folder, so that it does not spill over the one it is unpacked in.
[ "$(find "$folder/zip/unpacked" -mindepth 1 -maxdepth 1 | wc -l)" -eq 1 ] || Fail "the zip holds more than one folder"
mv "$folder/zip/unpacked/"* "$folder/unpacked"
Passed
