# To be sourced: how the scripts run their steps.

ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cd "$ROOT"
LOGS="$ROOT/build/logs"
mkdir -p "$LOGS"

# Step NAME COMMAND...: runs the command with its output in build/logs/NAME.log. Says nothing of a short step that goes
# well, where a long one stands every ten seconds, and shows the end of the output of one that fails.
Step() {
    local name="$1" log="$LOGS/$1.log" begin=$SECONDS pid status=0
    shift
    "$@" >"$log" 2>&1 &
    pid=$!
    trap 'kill '"$pid"' 2>/dev/null; exit 130' INT TERM
    while kill -0 "$pid" 2>/dev/null; do
        sleep 0.2
        if [ $((SECONDS - begin)) -ge 10 ] && [ $(((SECONDS - begin) % 10)) -eq 0 ]; then
            echo "$name, $((SECONDS - begin)) s: $(tail -n 1 "$log" | tr -d '\r' | cut -c 1-100)"
            sleep 1
        fi
    done
    wait "$pid" || status=$?
    trap - INT TERM
    echo "$((SECONDS - begin)) $name" >>"$LOGS/durations"
    if [ "$status" -ne 0 ]; then
        echo "$name failed ($status); the end of build/logs/$name.log:" >&2
        tail -n 60 "$log" >&2
    fi
    return "$status"
}

# The steps that took longest since build/logs/durations was removed, in one line.
LongestSteps() {
    sort -rn "$LOGS/durations" | head -n 6 | awk '{printf "%s%s %d s", NR == 1 ? "" : ", ", $2, $1} END {print ""}'
}

# EnsurePackages [LIST]: makes sure that the tools are there, as scripts/packages.txt or another list has them.
EnsurePackages() {
    local missing=() package list="${1:-scripts/packages.txt}"
    while read -r package; do
        dpkg-query -W -f '${db:Status-Abbrev}' "$package" 2>/dev/null | grep -q '^ii' || missing+=("$package")
    done < <(sed 's/ *#.*//; /^$/d' "$list")
    [ ${#missing[@]} -eq 0 ] && return 0
    local asRoot=()
    [ "$(id -u)" -eq 0 ] || asRoot=(sudo)
    echo "installing ${missing[*]}"
    Step apt-update "${asRoot[@]}" apt-get update
    Step apt-install "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends \
        "${missing[@]}"
}

# BuildPreset PRESET TARGET...: configures build/PRESET and builds targets of it, behind what else runs; further behind with
# BUILD_NICENESS.
BuildPreset() {
    local preset="$1"
    shift
    Step "configure-$preset" cmake --preset "$preset" || return
    Step "build-$preset" nice -n "${BUILD_NICENESS:-10}" cmake --build "build/$preset" --parallel --target "$@"
}
