#!/usr/bin/env bash
# Sets up, builds the quillbank command-line tool, and runs `quillbank info`
# and `quillbank tree` on the larger sample lesson.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release -j "$(nproc)" --target quillbank_tool >/dev/null
sample=examples/water-cycle.lesson.xml
echo "\$ quillbank info $sample"
build/release/tools/quillbank/quillbank info "$sample"
echo
echo "\$ quillbank tree $sample"
build/release/tools/quillbank/quillbank tree "$sample"
