#!/usr/bin/env bash
# Builds everything and puts the finished files into build/dist.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

EnsurePackages
BuildPreset release
rm -rf build/dist
Step install cmake --install build/release --prefix build/dist
