#!/usr/bin/env bash
# Runs the demo under Wine, after installing and building what is missing. Arguments go to the demo: --verbose adds the
# bridge's own log lines and every call that it makes to the agent.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

scripts/build.sh
source scripts/wine-env.sh
Step wine-prefix EnsureWinePrefix
KeepWineServer
wine64 build/dist/demo/demo.exe "$@"
