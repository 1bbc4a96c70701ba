#!/usr/bin/env bash
# Sets up, builds and runs the example program, which prints a lesson-like
# property bag as XML.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release -j "$(nproc)" --target bag_example >/dev/null
build/release/examples/bag_example
