#!/usr/bin/env bash
# Runs the browser tests of the page `quillbank view` writes (tests/browser)
# on the default build: the system's Chromium, headless, driven by
# puppeteer-core from tests/browser/package-lock.json (npm ci; no browser is
# downloaded). Needs the default build (cmake --build --preset default).
# Ends with "browser tests: N passed, N failed"; exit status 1 when one
# failed.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
build=${QUILLBANK_BUILD:-$root/build/default}

cd tests/browser
# npm ci only when the lock changed since the last install.
stamp=node_modules/.quillbank-lock
if [ ! -f "$stamp" ] || ! cmp -s package-lock.json "$stamp"; then
  PUPPETEER_SKIP_DOWNLOAD=1 npm ci --no-audit --no-fund --ignore-scripts --loglevel=error
  cp package-lock.json "$stamp"
fi
exec node run.mjs --quillbank "$build/tools/quillbank/quillbank" \
  --write-lessons "$build/bench/quillbank_write_lessons" \
  --data "$root/tests/data" --work "$build/browser-tests"
