#!/usr/bin/env bash
# Shows what docs/RELIABILITY.md promises, in full, after installing and building what is missing: every fault, the whole
# re-entrancy matrix, the long soak, the ends of processes, the checking bridge's silence, coverage and a minute of
# fuzzing; and the tests of the build against data races. scripts/test.sh runs a short form of all but the last three.
#   --seed N  for the soak; a new one each time when it is not given
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

seed=$((RANDOM * 32768 + RANDOM))
if [ "${1:-}" = --seed ] && [ $# -eq 2 ]; then
    seed="$2"
elif [ $# -ne 0 ]; then
    echo "usage: $0 [--seed N]" >&2
    exit 2
fi

EnsurePackages
EnsurePackages scripts/packages-browser.txt
BuildPreset release all
BuildPreset msabi all
BuildPreset asan all
BuildPreset tsan all
source scripts/wine-env.sh
Step wine-prefix EnsureWinePrefix
KeepWineServer

# Check NAME COMMAND...: one line about a check, with what the command's output says of cases and tests.
Check() {
    local name="$1" begin=$SECONDS status=0 log cases passed result=passed
    shift
    log="$LOGS/check-$name.log"
    Step "check-$name" "$@" || status=$?
    [ "$status" -eq 0 ] || result="FAILED ($status)"
    cases=$(tr -d '\r' <"$log" | sed -n 's/^fault matrix: .*: \([0-9]*\) of [0-9]* cases.*/\1/p; s/^fault cases: .*: \([0-9]*\), .*/\1/p' |
        awk '{sum += $1} END {if (NR) printf ", %d cases", sum}')
    passed=$(tr -d '\r' <"$log" | sed -n 's/^\[  PASSED  \] \([0-9]*\) tests\{0,1\}\..*/, \1 tests/p' |
        awk '{sum += $2} END {if (NR) printf ", %d tests", sum}')
    echo "$name: $result$cases$passed, $((SECONDS - begin)) s"
    return "$status"
}

# Both COMMAND --- COMMAND: the two at the same time.
Both() {
    local first=() pid status=0
    while [ "$1" != --- ]; do
        first+=("$1")
        shift
    done
    shift
    "${first[@]}" &
    pid=$!
    "$@" || status=1
    wait "$pid" || status=1
    return "$status"
}

# InShards PROGRAM: a program of tests in four processes at the same time; most of the longest tests only wait.
InShards() {
    local index pid pids=() status=0
    for index in 0 1 2 3; do
        GTEST_TOTAL_SHARDS=4 GTEST_SHARD_INDEX="$index" "$@" &
        pids+=($!)
    done
    for pid in "${pids[@]}"; do
        wait "$pid" || status=1
    done
    return "$status"
}

wine="scripts/wine-run.sh"
matrix="--gtest_filter=*FaultMatrix*"
faults="--gtest_filter=*MemoryFault*:*SystemFault*:BridgeAllocations*:RuntimeReserve*"
ends="--gtest_filter=*ProcessEnd*:AgainstAdvice*:Unloading*:*LeaveInside*"
status=0
Step style scripts/check-style.sh --all || status=1
export FLOWS_WHOLE=1
Both Check agent-faults-wine "$wine" build/release/bin/flow_tests.exe "$matrix" \
    --- Check agent-faults-native build/asan/bin/inner_flow_tests "$matrix" || status=1
Both Check memory-faults-wine "$wine" build/release/bin/flow_tests.exe "$faults" \
    --- Check memory-and-system-faults-native build/asan/bin/flow_tests "$faults" || status=1
for program in module_tests library_tests; do
    Check "process-ends-wine-$program" "$wine" "build/release/bin/$program.exe" "$ends" || status=1
done
export REENTRANCY_WHOLE=1
Both Check reentrancy-wine InShards "$wine" build/release/bin/reentrancy_tests.exe \
    --- Both Check reentrancy-asan InShards build/asan/bin/reentrancy_tests \
    --- Check reentrancy-tsan InShards build/tsan/bin/reentrancy_tests || status=1
echo "soak: 10000 operations in each build, seed $seed"
soak=(--operations 10000 --seed "$seed")
Both Check soak-wine "$wine" build/release/bin/soak.exe "${soak[@]}" \
    --- Both Check soak-asan build/asan/bin/soak "${soak[@]}" \
    --- Check soak-tsan build/tsan/bin/soak "${soak[@]}" || status=1

Check judge InShards env JUDGE_WHOLE=1 "$wine" build/release/bin/tool_tests.exe --gtest_filter='*Judge*' || status=1

# With the checking bridge in the place of the shipped one, all of these must be without a finding that they do not name.
silent="build/release/silent"
export VSMSGBUS_CHECK_SLOW=60000
# Building against data races takes a quarter as long as all that scripts/test.sh does.
Check tests-tsan ctest --preset tsan --parallel $((2 * $(nproc))) || status=1
Check made-projects ctest --preset release --tests-regex '^Package\.(NewModule|Commands)$' || status=1
Check timeline ctest --preset release --tests-regex '^Timeline\.' || status=1
Step silent-folder ctest --preset release --tests-regex '^Silent\.Folder$' || status=1
Check silent-modules InShards "$wine" "$silent/module_tests.exe" || status=1
Check silent-reentrancy InShards env --unset=REENTRANCY_WHOLE "$wine" "$silent/reentrancy_tests.exe" || status=1
Check silent-flows InShards "$wine" "$silent/flow_tests.exe" '--gtest_filter=-BridgeAllocations.AreAllCounted' || status=1
Check silent-soak "$wine" "$silent/soak.exe" "${soak[@]}" --tame || status=1
for module in gnu microsoft; do
    folder="$silent/$module"
    mkdir -p "$folder"
    cp "$silent/VsMsgbus.dll" "$silent/LogLib.dll" "$folder"
    cp "build/$([ "$module" = gnu ] && echo release/bin || echo msabi/bin)"/{abi_module,throwing_module}.dll "$folder"
    Check "silent-abi-$module" env --chdir="$folder" ABI_PAIR="$module-gnu" "$ROOT/$wine" \
        "$ROOT/build/release/bin/abi_tests.exe" || status=1
done
unset VSMSGBUS_CHECK_SLOW

scripts/check-reproducible.sh || status=1
scripts/coverage.sh || status=1
scripts/fuzz.sh || status=1
exit "$status"
