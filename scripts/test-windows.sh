#!/usr/bin/env bash
# Cross-builds the Windows in-process server with MinGW-w64 and runs its
# tests under Wine in a private prefix (build/windows/wineprefix): the
# JScript and VBScript suites through cscript, then the early-binding C++
# client. Every suite prints one line per check and a final sentinel line;
# a suite passes only when it exits 0 and its sentinel is there.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)

cmake --preset windows
cmake --build --preset windows -j "$jobs" --target QuillbankServer early_binding_client

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
  local output status=0
  output="$(timeout 600 "$@" 2>&1 | tr -d '\r')" || status=$?
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

exit "$failed"
