#!/usr/bin/env bash
# Runs a Windows program under Wine in this project's private prefix: wine-run.sh PROGRAM [ARGUMENT...]
# The first call makes the prefix (about 15 s); VSMSGBUS_WINEPREFIX puts it elsewhere than build/wineprefix.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/wine-env.sh"
EnsureWinePrefix
exec wine64 "$@"
