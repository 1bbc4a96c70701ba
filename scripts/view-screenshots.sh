#!/usr/bin/env bash
# Takes again the screenshots of `quillbank view` that the README shows
# (docs/view-*.png), from the sample lessons in tests/data/cli, with the
# system's Chromium. Builds the tool first.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake --preset default
cmake --build --preset default -j "$(nproc)" --target quillbank_tool
cd tests/browser
PUPPETEER_SKIP_DOWNLOAD=1 npm ci --no-audit --no-fund --ignore-scripts --loglevel=error
node screenshots.mjs --quillbank ../../build/default/tools/quillbank/quillbank --data ../data \
  --work ../../build/default/view-screenshots --out ../../docs
