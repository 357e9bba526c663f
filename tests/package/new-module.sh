#!/usr/bin/env bash
# new-module.sh SOURCES FOLDER GOOGLETEST-ARGUMENT...: the unpacked package makes the project of a module, which builds and
# passes its tests as it was made, with GoogleTest, also for Microsoft's C++ ABI; and refuses arguments that make no project.
# Package.Commands has a project without GoogleTest.
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"
sources="$1" package="$2/unpacked"
shift 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export VSMSGBUS_WINEPREFIX="${VSMSGBUS_WINEPREFIX:-$sources/build/wineprefix}"
# With it the tests would be built with GoogleTest from the beginning.
unset GOOGLETEST_SOURCE_DIR

cp -r "$package" "$work/package of mine"
newModule="$work/package of mine/scripts/new-module.sh"

# Refuses TEXT ARGUMENT...: the script does not take the arguments, makes nothing and says TEXT.
Refuses() {
    local expected="new-module.sh: $1" output status=0
    shift
    output=$("$newModule" "$@" 2>&1) || status=$?
    [ "$status" -eq 2 ] || Fail "new-module.sh $* ends with $status: $output"
    [ "$output" = "$expected" ] || Fail "new-module.sh $* says: $output"
    [ ! -e "$work/refused" ] || Fail "new-module.sh $* has made something"
}
Refuses "three arguments are needed, not 2: NAME PRODUCT-ID FOLDER, as in: MyModule MY_PRODUCT1000 ../my-module" \
    Module PRODUCT
for name in 1Module 'My Module' My-Module ''; do
    Refuses "NAME is a letter with letters, digits and underscores behind it, as in MyModule, not '$name'" \
        "$name" PRODUCT "$work/refused"
done
for name in VsMsgbus loglib ny_simulator test; do
    Refuses "NAME must not be that of another file or of a step of the build, as in MyModule, not '$name'" \
        "$name" PRODUCT "$work/refused"
done
for id in 'A PRODUCT' 'A"' ''; do
    Refuses "PRODUCT-ID is made of letters, digits and underscores, as in MY_PRODUCT1000, not '$id'" \
        Module "$id" "$work/refused"
done
Refuses "FOLDER is where the project is made, as in ../my-module" Module PRODUCT ""
Refuses "FOLDER is one that is not there yet or empty; '$work' is there" Module PRODUCT "$work"

# From another folder, to a relative path.
cd "$work"
"$newModule" Scanner SCAN_2000x "my scanner"
cd "my scanner"
[ "$(grep -rF SCAN_2000x . | wc -l)" -eq 1 ] || Fail "the product id stands in several places"
if grep -riE 'NewModule|PACKAGE-FOLDER|SCRIPTS-FOLDER' .; then
    Fail "these are left of the templates"
fi
cmake --preset mingw-cross "$@"
cmake --build --preset mingw-cross
ctest --preset mingw-cross --verbose | grep -F '[  PASSED  ] 6 tests' || Fail "the tests did not run"

# What a test throws is said, and fails.
mv build/mingw-cross/agent build/mingw-cross/nowhere
status=0
output=$(ctest --preset mingw-cross) || status=$?
[ "$status" -ne 0 ] || Fail "the tests pass without an agent"
grep -qF '[  FAILED  ] ScannerTest.TellsItsVersion' <<<"$output" || Fail "$output"
mv build/mingw-cross/nowhere build/mingw-cross/agent

# The module for Microsoft's C++ ABI, tried by the same tests. A launcher such as ccache need not know clang-cl's options.
unset CMAKE_C_COMPILER_LAUNCHER CMAKE_CXX_COMPILER_LAUNCHER
cmake --workflow --preset msabi-cross
# A test that fails with this module is said, also when only this preset is built after a change.
sed -i 's/"Version"), "1.0"/"Version"), "2.0"/' tests/ScannerTest.cpp
status=0
output=$(cmake --workflow --preset msabi-cross 2>&1) || status=$?
[ "$status" -ne 0 ] || Fail "changed tests did not run with the module for Microsoft's C++ ABI"
grep -qF '[  FAILED  ] ScannerTest.TellsItsVersion' <<<"$output" || Fail "$output"
sed -i 's/"Version"), "2.0"/"Version"), "1.0"/' tests/ScannerTest.cpp
cmake --build --preset msabi-cross
"$sources/scripts/wine-run.sh" build/msabi-cross/pair/bin/ScannerTests.exe | grep -F '[  PASSED  ] 6 tests' ||
    Fail "the tests did not run with the module for Microsoft's C++ ABI"
cmp -s build/msabi-cross/bin/Scanner.dll build/msabi-cross/pair/bin/Scanner.dll || Fail "another module was tried"
x86_64-w64-mingw32-objdump -p build/msabi-cross/bin/Scanner.dll | grep -i 'vcruntime140.dll' ||
    Fail "the module is not for Microsoft's C++ ABI"

# On Windows the others are there as well.
for preset in mingw clang visual-studio mingw-cross msabi-cross; do
    grep -qF "\"configurePreset\": \"$preset\"" CMakePresets.json || Fail "there is no preset $preset"
done
Passed
