#!/usr/bin/env bash
# Measures the bridge against the floor and against what a module's author would write instead, under Wine, after
# installing and building what is missing: see docs/PERFORMANCE.md. Figures stand in build/bench.
#   --quick     a short form: fewer rounds and sizes
#   --document  writes the figures into docs/PERFORMANCE.md as well, and draws its pictures
#   --checking  only shows properties and walks with the shipped bridge and with the checking one, without and
#              with its record, in turns
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

programArguments=()
reportArguments=()
checking=no
for argument in "$@"; do
    case "$argument" in
    --quick) programArguments+=(--quick) ;;
    --document) reportArguments+=(--document docs/PERFORMANCE.md) ;;
    --checking) checking=yes ;;
    *)
        echo "usage: $0 [--quick] [--document] [--checking]" >&2
        exit 2
        ;;
    esac
done

EnsurePackages
BuildPreset release bench
source scripts/wine-env.sh
Step wine-prefix EnsureWinePrefix
KeepWineServer

if [ "$checking" = yes ]; then
    BuildPreset release bench VsMsgbusChecking
    folder="$ROOT/build/release/silent"
    Step silent-folder cmake "-DBIN=$ROOT/build/release/bin" "-DCHECKING=$ROOT/build/release/checking/VsMsgbus.dll" \
        "-DFOLDER=$folder" -P tests/checking/SilentFolder.cmake
    record="$(mktemp)"
    # Bench TITLE FOLDER [VARIABLE=VALUE...]
    Bench() {
        local title="$1" bin="$2" section
        shift 2
        echo "$title"
        for section in properties policies; do
            env "$@" wine64 "$bin/bench_module.exe" --quick --only "$section" 2>/dev/null
        done
    }
    for _ in 1 2; do
        Bench "the shipped bridge" build/release/bin
        Bench "the checking bridge" "$folder"
        Bench "the checking bridge, with a record" "$folder" "VSMSGBUS_TRACE=$record" VSMSGBUS_TRACE_LIMIT=300000000
    done
    rm -f "$record"
    exit
fi

mkdir -p build/bench
read -r load _ </proc/loadavg
for program in inner module memory host; do
    wine64 "build/release/bin/bench_$program.exe" "${programArguments[@]}" --json "build/bench/$program.part.json"
done
note="Measured on $(date -u +%Y-%m-%d) with $(wine64 --version), $(x86_64-w64-mingw32-g++-posix -dumpfullversion) of g++ \
and $(nproc) processors, at a load of $load when it began${programArguments:+, in the short form}."
echo
python3 bench/report/report.py build/bench --note "$note" "${reportArguments[@]}"
