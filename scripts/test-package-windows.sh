#!/usr/bin/env bash
# The Windows package as a host vendor uses it: scripts/package-windows.sh
# makes the zip, which is unpacked into build/package-test and installed
# with install.cmd into a fresh 64-bit prefix (build/wineprefix-package);
# the Functions script suites run with both bitnesses' cscript against the
# unpacked servers; uninstall.cmd must leave no key of ours. The same again
# per user ("install.cmd user"). Needs registration_test.exe (x64) built, to
# list the keys of ours.
set -euo pipefail
cd "$(dirname "$0")/.."
zip="$(scripts/package-windows.sh | tail -1)"
unpacked="$PWD/build/package-test"
rm -rf "$unpacked"
mkdir -p "$unpacked"
(cd "$unpacked" && cmake -E tar xf "$zip")

export WINEPREFIX="$PWD/build/wineprefix-package"
rm -rf "$WINEPREFIX"
source scripts/wine-env.sh
wine_prefix_ready
source scripts/wine-checks.sh

functions_clsid='HKLM\Software\Classes\CLSID\{B2917C1B-10DC-4491-904D-CE3C9EE9110A}\InprocServer32'
for file in x86/Quillbank.dll x86/Quillbank.tlb x86/Quillbank.manifest x64/Quillbank.dll x64/Quillbank.tlb \
  x64/Quillbank.manifest install.cmd uninstall.cmd README.txt; do
  check yes "$([ -s "$unpacked/$file" ] && echo yes)" "the package holds $file"
done
check "" "$(ours)" "no key of ours in the fresh prefix"

suite() {
  local bits="$1" output
  output="$(run "$(system_folder "$bits")\\cscript.exe" //nologo "$(suite_script tests/com/functions_test.js)")"
  printf '%s\n' "$output" | grep -v -e '^ok' -e '^END-OF-SUITE$' || true
  check yes "$(printf '%s\n' "$output" | grep -qx 'END-OF-SUITE' && echo yes)" \
    "the Functions suite passes with the installed $bits-bit server"
}

for scope in machine user; do
  argument=""
  [ "$scope" = user ] && argument=user
  status=0
  run cmd /c "$(windows_path "$unpacked/install.cmd")" $argument || status=$?
  if [ "$status" -ne 0 ]; then
    # Now and then Wine fails the first registration in a new prefix (seen
    # once in many runs, not reproduced); install.cmd has undone its part, so
    # a second run starts clean and a real failure fails it again.
    echo "(install.cmd $argument failed with $status; trying once more)"
    status=0
    run cmd /c "$(windows_path "$unpacked/install.cmd")" $argument || status=$?
  fi
  check 0 "$status" "install.cmd $argument registers both builds ($scope)"
  if [ "$scope" = machine ]; then
    check "$(windows_path "$unpacked/x64/Quillbank.dll")" "$(value "$functions_clsid" /reg:64)" \
      "the 64-bit view names the unpacked x64 server"
    check "$(windows_path "$unpacked/x86/Quillbank.dll")" "$(value "$functions_clsid" /reg:32)" \
      "the 32-bit view names the unpacked x86 server"
    suite 64
    suite 32
  else
    check "{B2917C1B-10DC-4491-904D-CE3C9EE9110A}" \
      "$(value 'HKCU\Software\Classes\Quillbank.Functions\CLSID' /reg:64)" "the user's classes name the class"
    check "" "$(value "$functions_clsid" /reg:64)" "nothing is registered per machine"
  fi
  status=0
  run cmd /c "$(windows_path "$unpacked/uninstall.cmd")" $argument || status=$?
  check 0 "$status" "uninstall.cmd $argument succeeds ($scope)"
  check "" "$(ours)" "no key of ours is left after uninstall.cmd $argument ($scope)"
done
status=0
run cmd /c "$(windows_path "$unpacked/install.cmd")" everyone || status=$?
check 2 "$status" "install.cmd refuses an argument it does not know"
check "" "$(ours)" "and registers nothing"

if [ "$failed" -eq 0 ]; then echo "END-OF-SUITE"; fi
exit "$failed"
