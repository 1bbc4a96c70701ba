#!/usr/bin/env bash
# Sets up, builds and runs every test: the normal build, the sanitizer build,
# then the Windows server cross-built with MinGW-w64 and tested under Wine.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
jobs=$(nproc)

cmake --preset default
cmake --build --preset default -j "$jobs"
ctest --preset default -j "$jobs"

cmake --preset sanitize
cmake --build --preset sanitize -j "$jobs"
ctest --preset sanitize -j "$jobs"

scripts/test-windows.sh
