#!/usr/bin/env bash
# Sets up, builds and runs every test: the normal build, the sanitizer build,
# a short run of every fuzz target (10 seconds each), then the Windows server
# cross-built with MinGW-w64 and tested under Wine.
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

scripts/fuzz.sh 10

scripts/test-windows.sh
