#!/usr/bin/env bash
# Measures the bridge against the floor and against what a module's author would write instead, under Wine, after
# installing and building what is missing: see docs/PERFORMANCE.md. Figures stand in build/bench.
#   --quick     a short form: fewer rounds and sizes
#   --document  writes the figures into docs/PERFORMANCE.md as well, and draws its pictures
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

programArguments=()
reportArguments=()
for argument in "$@"; do
    case "$argument" in
    --quick) programArguments+=(--quick) ;;
    --document) reportArguments+=(--document docs/PERFORMANCE.md) ;;
    *)
        echo "usage: $0 [--quick] [--document]" >&2
        exit 2
        ;;
    esac
done

EnsurePackages
BuildPreset release bench
source scripts/wine-env.sh
Step wine-prefix EnsureWinePrefix
KeepWineServer

mkdir -p build/bench
read -r load _ </proc/loadavg
for program in inner module memory; do
    wine64 "build/release/bin/bench_$program.exe" "${programArguments[@]}" --json "build/bench/$program.part.json"
done
note="Measured on $(date -u +%Y-%m-%d) with $(wine64 --version), $(x86_64-w64-mingw32-g++-posix -dumpfullversion) of g++ \
and $(nproc) processors, at a load of $load when it began${programArguments:+, in the short form}."
echo
python3 bench/report/report.py build/bench --note "$note" "${reportArguments[@]}"
