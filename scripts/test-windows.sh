#!/usr/bin/env bash
# Cross-builds the Windows in-process server with MinGW-w64 and runs its
# tests under Wine in a private prefix (build/windows/wineprefix): the
# JScript and VBScript suites through cscript, the early-binding C++ client,
# and the core suites cross-compiled against the MSXML backend (without the
# tests named in tests/com/wine_differences.txt). Every suite prints one line per check and a final sentinel line;
# a suite passes only when it exits 0 and its sentinel is there.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)

cmake --preset windows
core_suites=(frame support xml properties elements storyboards maps lesson)
targets=(QuillbankServer early_binding_client)
for suite in "${core_suites[@]}"; do targets+=("${suite}_tests"); done
cmake --build --preset windows -j "$jobs" --target "${targets[@]}"

build=build/windows
wine=/usr/lib/wine/wine64
wineserver=/usr/lib/wine/wineserver
export WINEPREFIX="$PWD/$build/wineprefix"
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="
export WINEARCH=win64

if [ ! -f "$WINEPREFIX/system.reg" ]; then
  echo "Making the Wine prefix $WINEPREFIX"
  timeout 600 "$wine" wineboot -i
  timeout 300 "$wineserver" -w
fi
trap 'timeout 60 "$wineserver" -k || true' EXIT

dll="$(timeout 60 "$wine" winepath -w "$PWD/$build/src/com/Quillbank.dll" 2>/dev/null | tr -d '\r')"
timeout 300 "$wine" regsvr32 /s "$dll"

failed=0
run_suite() {
  local name="$1"
  shift
  local output status attempt
  # Wine now and then fails to start cscript at all ("ShellExecuteEx
  # failed"); that is no result of the suite, so such a start is tried again.
  for attempt in 1 2 3; do
    status=0
    output="$(timeout 600 "$@" 2>&1 | tr -d '\r')" || status=$?
    if ! printf '%s\n' "$output" | grep -q 'ShellExecuteEx failed'; then
      break
    fi
    echo "($name: Wine could not start the script host, attempt $attempt)"
  done
  printf '%s\n' "$output"
  if [ "$status" -ne 0 ] || ! printf '%s\n' "$output" | grep -qx 'END-OF-SUITE'; then
    echo "FAILED: $name (exit $status)"
    failed=1
  else
    echo "PASSED: $name"
  fi
}

for script in tests/com/*.js tests/com/*.vbs; do
  path="$(timeout 60 "$wine" winepath -w "$PWD/$script" 2>/dev/null | tr -d '\r')"
  run_suite "$script" "$wine" cscript //nologo "$path"
done
run_suite "early-binding client" "$wine" "$build/tests/com/early_binding_client.exe"

# The core suites: a run passes when GoogleTest exits 0 after its summary.
skipped="$(sed -e '/^#/d' -e 's/ # .*//' -e '/^$/d' tests/com/wine_differences.txt | paste -sd: -)"
for suite in "${core_suites[@]}"; do
  status=0
  output="$(timeout 900 "$wine" "$build/tests/${suite}_tests.exe" "--gtest_filter=-$skipped" 2>&1 | tr -d '\r')" \
    || status=$?
  printf '%s\n' "$output" | grep -E '^\[  (FAILED|PASSED)|^\[==========\]' || true
  if [ "$status" -ne 0 ] || ! printf '%s\n' "$output" | grep -q '^\[  PASSED  \]'; then
    printf '%s\n' "$output" | grep -B5 -A15 'Failure' | head -100 || true
    echo "FAILED: core suite $suite under Wine (exit $status)"
    failed=1
  else
    echo "PASSED: core suite $suite under Wine"
  fi
done

exit "$failed"
