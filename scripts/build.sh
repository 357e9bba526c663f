#!/usr/bin/env bash
# Builds all but the tests and puts the finished files into build/dist.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

EnsurePackages
BuildPreset release finished
rm -rf build/dist
Step install cmake --install build/release --prefix build/dist
