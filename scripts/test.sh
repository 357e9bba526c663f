#!/usr/bin/env bash
# Runs all checks and tests, after installing and building what is missing. Arguments go to ctest, such as -R NAME.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

scripts/build.sh
BuildPreset release all
Step style scripts/check-style.sh
source scripts/wine-env.sh
Step wine-prefix EnsureWinePrefix
KeepWineServer

# Most of the longest tests only wait, so there may be more of them than processors.
status=0
Step tests ctest --test-dir build/release --parallel $((2 * $(nproc))) --output-on-failure --no-tests=error "$@" ||
    status=$?
grep -E '^[0-9]+% tests passed|^Total Test time' build/logs/tests.log
exit "$status"
