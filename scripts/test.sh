#!/usr/bin/env bash
# Runs all checks and tests, or with --quick the quick tests of the Windows build alone: see Usage.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

Usage() {
    cat <<'END'
usage: scripts/test.sh [--quick] [CTEST-OPTION...]
Runs all checks and tests, after installing and building what is missing: the style of the sources, the tests of the
Windows builds under Wine, and those of the native build that checks memory. scripts/check.sh has more, data races
among it.
  --quick         only builds the Windows build and runs its tests, but for those labelled slow
  CTEST-OPTION    goes to ctest, such as -R NAME
END
}

# Refuse MESSAGE: ends the script for arguments that it does not take.
Refuse() {
    echo "$0: $1" >&2
    Usage >&2
    exit 2
}

# CheckOptions [CTEST-OPTION...]: ends the script for what ctest does not take, which it would only say after the builds.
CheckOptions() {
    local help word name='' wantsValue=no
    # It may be among what is still to be installed.
    command -v ctest >/dev/null || return 0
    help="$(ctest --help)"
    for word in "$@"; do
        if [[ "$word" != -* ]]; then
            # The value of the option before it.
            [ -n "$name" ] || Refuse "'$word' is no option of ctest's"
            name=''
            wantsValue=no
            continue
        fi
        [ "$wantsValue" = no ] || Refuse "$name wants a value"
        name="${word%%=*}"
        [[ "$name" =~ ^-j[0-9]+$ ]] && name=-j
        grep -qE -- "(^|[ ,])$name([ ,=[]|\$)" <<<"$help" || Refuse "'$word' is no option of ctest's"
        if [ "$name" = "$word" ] && grep -qE -- "(^|[ ,])$name <" <<<"$help"; then
            wantsValue=yes
        fi
    done
    [ "$wantsValue" = no ] || Refuse "$name wants a value"
}

quick=no
if [ "${1:-}" = --quick ]; then
    quick=yes
    shift
fi
if [ "${1:-}" = --help ] || [ "${1:-}" = -h ]; then
    Usage
    exit
fi
CheckOptions "$@"

# RunTests PRESET TITLE [CTEST-ARGUMENT...]: one line about a build's tests. Most of the longest only wait, so there may
# be more of them at a time than processors; with three for each, those that poll take over a tenth more of the processors' time.
# Those of the native build give way to what runs beside them.
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
    elif [ "$preset" = asan ]; then
        run=(nice "${run[@]}")
    fi
    Step "tests-$preset" "${run[@]}" || status=$?
    # A process may run many tests: what passed is counted from what the programs say.
    passed=$(sed -n 's/^\[  PASSED  \] \([0-9]*\) tests\{0,1\}\..*/\1/p' "build/$preset/Testing/Temporary/LastTest.log" |
        awk '{sum += $1} END {print sum + 0}')
    failed=$(sed -n 's/^.* tests passed, \([0-9]*\) tests failed out of \([0-9]*\)$/\1 of \2/p' "$LOGS/tests-$preset.log")
    echo "$title: $passed tests passed, ${failed:-some} processes failed, $((SECONDS - begin)) s"
    if [ "$status" -ne 0 ]; then
        # What failed, and what a sanitizer says of a program whose tests all passed.
        sed -nE 's/\r$//; s/^(\[  FAILED  \] [^ ,]+\.[^ ,]+).*/\1/p; /^SUMMARY: /p' "build/$preset/Testing/Temporary/LastTest.log" |
            sort -u | head -n 40
    fi
    return "$status"
}

# RunQuick [CTEST-OPTION...]: the quick tests of the Windows build, and what was left out.
RunQuick() {
    local status=0 slow
    EnsurePackages
    BuildPreset release all
    source scripts/wine-env.sh
    Step wine-prefix EnsureWinePrefix
    KeepWineServer
    # Before the tests, because it empties the log of the last ones.
    slow=$(ctest --preset release --show-only --label-regex '^slow$' |
        sed -n 's/^ *Test *#[0-9]*: \(.*\)/\1/p' | sed -E 's/\.[0-9]+$//' | uniq | paste -sd ' ')
    # More at a time than RunTests takes by itself: no other build's tests run beside these.
    RunTests release "Windows build under Wine, quick tests" --parallel $((3 * $(nproc))) --label-exclude '^slow$' "$@" ||
        status=1
    echo "left out: the style, the builds msabi and asan, and of this one the tests labelled slow: $slow"
    return "$status"
}

if [ "$quick" = yes ]; then
    RunQuick "$@"
    exit
fi

# TestNative [CTEST-OPTION...]: what needs no Windows.
TestNative() {
    local status=0
    Step style nice scripts/check-style.sh || status=1
    BUILD_NICENESS=15 BuildPreset asan all || return 1
    RunTests asan "native, addresses, leaks and undefined behaviour" "$@" || status=1
    return "$status"
}

rm -f "$LOGS/durations"
EnsurePackages
source scripts/wine-env.sh
# Made behind the builds, because it mostly waits. KeepWineServer waits for it.
Step wine-prefix EnsureWinePrefix &

# The native half runs behind the Windows half, which has more to do: it gets the processors when that one links or waits. It
# is a group of processes, which ends with this script. Its result is a file: the shell forgets a child's status when a later child gets
# its process id.
nativePassed="$LOGS/native-tests.passed"
rm -f "$nativePassed"
set -m
{ TestNative "$@" && touch "$nativePassed"; } &
native=$!
set +m
EndNative() {
    kill -- "-$native" 2>/dev/null || true
}
trap EndNative EXIT

BuildPreset release all finished
scripts/build.sh
BuildPreset msabi all
KeepWineServer
trap 'EndNative; EndWineServer' EXIT
status=0
# scripts/check.sh has what is left out: projects of authors, which are built as Package.Consumer is, and the pages of
# vsmsgbus timeline in a browser, which would have to be installed.
RunTests release "Windows build under Wine" --exclude-regex '^(Package\.(NewModule|Commands)|Timeline\..*)$' "$@" ||
    status=1
RunTests msabi "Microsoft's C++ ABI under Wine" "$@" || status=1
wait "$native" 2>/dev/null || true
trap EndWineServer EXIT
[ -e "$nativePassed" ] || status=1
echo "of $SECONDS s, the longest steps took: $(LongestSteps)"
exit "$status"
