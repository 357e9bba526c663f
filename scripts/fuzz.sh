#!/usr/bin/env bash
# Fuzzes what comes from the agent and from the registry, natively: scripts/fuzz.sh [SECONDS [TARGET...]], one minute
# for all targets together when nothing else is said. Each target begins with its inputs in tests/fuzz/corpus; what it finds
# on the way stays in build/fuzz/corpus. An input that ends the process is left in build/fuzz/found, and the exit is not
# zero then: `build/fuzz/bin/fuzz_TARGET FILE` runs it again.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

seconds="${1:-60}"
targets=("${@:2}")
[ ${#targets[@]} -gt 0 ] || mapfile -t targets < <(ls tests/fuzz/corpus)
each=$(((seconds + ${#targets[@]} - 1) / ${#targets[@]}))
work="$ROOT/build/fuzz"

EnsurePackages
BuildPreset fuzz fuzzers
mkdir -p "$work/found"

status=0
for target in "${targets[@]}"; do
    mkdir -p "$work/corpus/$target"
    failure=""
    Step "fuzz-$target" "$work/bin/fuzz_$target" -max_total_time="$each" -max_len=600 -len_control=0 -timeout=30 \
        -print_final_stats=1 -artifact_prefix="$work/found/$target-" "$work/corpus/$target" "tests/fuzz/corpus/$target" ||
        failure=", FOUND SOMETHING: see build/fuzz/found and build/logs/fuzz-$target.log"
    log="$LOGS/fuzz-$target.log"
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    edges=$(sed -n 's/^#[0-9]*[[:space:]].* cov: \([0-9]*\) .*/\1/p' "$log" | tail -n 1)
    echo "fuzz $target: ${runs:-0} executions, ${edges:-0} edges of the product reached$failure"
    # A target that reaches nothing tests nothing.
    if [ -n "$failure" ] || [ "${edges:-0}" -lt 50 ]; then
        status=1
    fi
done
exit "$status"
