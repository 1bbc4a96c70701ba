#!/usr/bin/env bash
# Sets up, builds and runs every test: the normal build, the browser tests of
# the page quillbank view writes (beside the sanitizer build), the sanitizer build,
# a short run of every fuzz target (10 seconds each), then the Windows server
# cross-built with MinGW-w64 and tested under Wine.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
jobs=$(nproc)

cmake --preset default
cmake --build --preset default -j "$jobs"
ctest --preset default -j "$jobs"

# The browser tests of quillbank view run on the default build while the
# sanitizer build is made and tested; their result is awaited after it.
browser_log=build/browser-tests.log
scripts/test-browser.sh >"$browser_log" 2>&1 &
browser_pid=$!

cmake --preset sanitize
cmake --build --preset sanitize -j "$jobs"
ctest --preset sanitize -j "$jobs"

browser_status=0
wait "$browser_pid" || browser_status=$?
cat "$browser_log"
if [ "$browser_status" -ne 0 ]; then
  echo "the browser tests failed (see $browser_log)" >&2
  exit 1
fi

scripts/fuzz.sh 10

scripts/test-windows.sh
