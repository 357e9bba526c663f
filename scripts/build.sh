#!/usr/bin/env bash
# Builds all but the tests, and puts the finished files into build/dist and, as one file, into build/zip.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

EnsurePackages
BuildPreset release finished
rm -rf build/dist build/zip
Step install cmake --install build/release --prefix build/dist
Step zip scripts/make-zip.py build/dist build/zip
echo "the finished files stand in build/dist, and as one file in $(ls build/zip/*.zip)"
