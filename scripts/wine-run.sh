#!/usr/bin/env bash
# Runs a Windows program under Wine in this project's private prefix: wine-run.sh PROGRAM [ARGUMENT...]
# The first call makes the prefix (about 15 s); VSMSGBUS_WINEPREFIX puts it elsewhere than build/wineprefix.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/wine-env.sh"
EnsureWinePrefix
# One process in some hundreds does not start, with error 1359, when the system has put something where Wine needs the
# addresses. So the system chooses none at random, where it lets itself be told.
fixedAddresses=(setarch -R)
"${fixedAddresses[@]}" true 2>/dev/null || fixedAddresses=()
exec "${fixedAddresses[@]}" wine64 "$@"
