#!/usr/bin/env bash
# consumer.sh SOURCES FOLDER: the example of the unpacked package is built against it, outside the source tree, and runs.
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"
sources="$1" package="$2/unpacked"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Moved once more, so that what finds the package by a path of its own is found out.
cp -r "$package" "$work/package"
cmake -S "$work/package/example" -B "$work/build" -G Ninja -DCMAKE_SYSTEM_NAME=Windows \
    -DCMAKE_CXX_COMPILER=x86_64-w64-mingw32-g++-posix -DCMAKE_PREFIX_PATH="$work/package"
cmake --build "$work/build"
output=$("$sources/scripts/wine-run.sh" "$work/build/bin/host.exe" | tr -d '\r')
[ "$output" = "General: Version = 1.0
General: State = running
the module has left" ] || Fail "the host says: $output"
Passed
