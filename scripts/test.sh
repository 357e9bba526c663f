#!/usr/bin/env bash
# Runs all checks and tests, after installing and building what is missing: the style of the sources, the tests of the
# Windows builds under Wine, and those of the native checking builds. Arguments go to ctest, such as -R NAME.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

# RunTests PRESET TITLE [CTEST-ARGUMENT...]: one line about a build's tests. Most of the longest only wait, so there may
# be more of them at a time than processors.
RunTests() {
    local preset="$1" title="$2" begin=$SECONDS status=0 run passed failed
    shift 2
    run=(ctest --preset "$preset" --parallel $((2 * $(nproc))) "$@")
    if [ "$preset" = msabi ] && [ $# -eq 0 ]; then
        # As on Windows, where nobody has this script.
        run=(cmake --workflow --preset "$preset")
    elif [ "$preset" = msabi ]; then
        # A workflow takes no arguments, and most of them mean tests of other builds.
        run+=(--no-tests=ignore)
    fi
    Step "tests-$preset" "${run[@]}" || status=$?
    # A process may run many tests: what passed is counted from what the programs say.
    passed=$(sed -n 's/^\[  PASSED  \] \([0-9]*\) tests\{0,1\}\..*/\1/p' "build/$preset/Testing/Temporary/LastTest.log" |
        awk '{sum += $1} END {print sum + 0}')
    failed=$(sed -n 's/^.* tests passed, \([0-9]*\) tests failed out of \([0-9]*\)$/\1 of \2/p' "$LOGS/tests-$preset.log")
    echo "$title: $passed tests passed, ${failed:-some} processes failed, $((SECONDS - begin)) s"
    return "$status"
}

scripts/build.sh
for preset in release msabi asan tsan; do
    BuildPreset "$preset" all
done
source scripts/wine-env.sh
Step wine-prefix EnsureWinePrefix
KeepWineServer

# The tests mostly wait: two of these at a time.
status=0
RunWindowsTests() {
    local status=0
    RunTests release "Windows build under Wine" "$@" || status=1
    RunTests msabi "Microsoft's C++ ABI under Wine" "$@" || status=1
    return "$status"
}
RunWindowsTests "$@" &
beside=$!
Step style scripts/check-style.sh || status=1
wait "$beside" || status=1
RunTests asan "native, addresses, leaks and undefined behaviour" "$@" &
beside=$!
RunTests tsan "native, data races" "$@" || status=1
wait "$beside" || status=1
exit "$status"
