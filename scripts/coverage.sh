#!/usr/bin/env bash
# Counts which lines and branches of the product its tests run, in a Windows build of its own under Wine, and fails
# when they are fewer than the bars below. Lists what no test reaches; the pages in build/coverage/html show it source by
# source.
#
# Not counted as branches: the ways out of a statement by an exception, which the compiler adds to every call, and those
# that it knows to be never taken.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

lineBar=99.8
branchBar=96
build="$ROOT/build/coverage"
programs=(library_tests inner_tests module_tests flow_tests reentrancy_tests)

# Count PROGRAM: all its tests in one process, because each process takes the counts of those before it and adds its
# own.
Count() {
    wine64 "$build/bin/$1.exe"
}

# CountModules: modules of both C++ ABIs, because what they throw passes different code. The program looks for module and
# bridge where it is started.
CountModules() {
    local folder="$build/microsoft-gnu"
    mkdir -p "$folder"
    cp "$build"/bin/{VsMsgbus,LogLib}.dll build/msabi/bin/{abi_module,throwing_module}.dll "$folder"
    (cd "$folder" && ABI_PAIR=microsoft-gnu wine64 "$build/bin/abi_tests.exe")
    (cd "$build/bin" && ABI_PAIR=gnu-gnu wine64 "$build/bin/abi_tests.exe")
}

# Report OUTPUT...: what the last counting found, in one of gcovr's forms.
Report() {
    gcovr --root "$ROOT" --add-tracefile "$build/counts.json" --exclude-throw-branches --exclude-unreachable-branches "$@"
}

# The files of a table of gcovr's that miss something, each with its lines. A long name stands in a row of its own there.
Missing() {
    awk 'NF == 1 { name = $1; next }
        { if (name ~ /\.(h|cpp)$/) $0 = name " " $0; name = "" }
        $1 ~ /\.(h|cpp)$/ && NF == 5 { print "  " $1 ": " $5 }'
}

EnsurePackages
BuildPreset coverage "${programs[@]}" abi_tests VsMsgbus
BuildPreset msabi abi_module throwing_module
source scripts/wine-env.sh
Step wine-prefix EnsureWinePrefix
KeepWineServer

find "$build" -name '*.gcda' -delete
for program in "${programs[@]}"; do
    Step "coverage-$program" Count "$program"
done
Step coverage-modules CountModules
Step coverage-counts gcovr --root "$ROOT" --gcov-executable x86_64-w64-mingw32-gcov-posix --object-directory "$build" \
    --exclude-throw-branches --exclude-unreachable-branches \
    --filter "$ROOT/(agent|base|dispatcher|include|library|loglib|msgbus|policy|property|scheduler|services|updater|values)/" \
    --json "$build/counts.json" "$build/library" "$build/loglib"
mkdir -p "$build/html"
Step coverage-pages Report --html-details "$build/html/index.html"

echo "lines that no test runs:"
Report --txt | Missing
echo "branches that no test takes, by line:"
Report --txt --branches | Missing
Report --print-summary --txt /dev/null --fail-under-line "$lineBar" --fail-under-branch "$branchBar"
