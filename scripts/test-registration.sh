#!/usr/bin/env bash
# Registration of both servers in a prefix of its own
# (build/wineprefix-registration), after scripts/test-windows.sh has built
# them: registration_test.exe of each bitness (per machine, per user, twice,
# never registered, both scopes in either order, a registration failing
# half-way), then both servers side by side as on a 64-bit Windows through
# regsvr32 (system32 and syswow64): each view names its own server, the type
# library has its win32 and win64 entries, unregistering one leaves the
# other usable, unregistering both leaves no key of ours; and regsvr32's
# per-user registration (/n /i:user); then the registration-free host of
# each bitness (tests/com/regfree_host.cpp) with no key of ours at all.
set -euo pipefail
cd "$(dirname "$0")/.."
export WINEPREFIX="$PWD/build/wineprefix-registration"
source scripts/wine-env.sh
wine_prefix_ready

source scripts/wine-checks.sh
functions_clsid='HKLM\Software\Classes\CLSID\{B2917C1B-10DC-4491-904D-CE3C9EE9110A}\InprocServer32'
typelib='HKLM\Software\Classes\TypeLib\{51C4E8EB-6B81-4B68-A432-03B5FDD7975E}\2.0\409'

for bits in 64 32; do
  output="$(run "$(windows_path "$(build_folder "$bits")/tests/com/registration_test.exe")" "$(dll "$bits")")" \
    || failed=1
  printf '%s\n' "$output"
  printf '%s\n' "$output" | grep -qx 'END-OF-SUITE' || failed=1
done

check "" "$(ours)" "no key of ours before the side-by-side registration"
check 0 "$(regsvr 64 "$(dll 64)")" "regsvr32 registers the x64 server"
check 0 "$(regsvr 32 "$(dll 32)")" "syswow64's regsvr32 registers the x86 server"
check yes "$([ -n "$(ours)" ] && echo yes)" "the keys of ours are seen while registered"
check "$(dll 64)" "$(value "$functions_clsid" /reg:64)" "the 64-bit view names the x64 server"
check "$(dll 32)" "$(value "$functions_clsid" /reg:32)" "the 32-bit view names the x86 server"
check "$(dll 64)" "$(value "$typelib\\win64")" "the type library's win64 entry names the x64 server"
check "$(dll 32)" "$(value "$typelib\\win32")" "the type library's win32 entry names the x86 server"
check "created 00000000-0000-0000-0000-000000000000" "$(created 64)" "a 64-bit host creates Quillbank.Functions"
check "created 00000000-0000-0000-0000-000000000000" "$(created 32)" "a 32-bit host creates Quillbank.Functions"
check 0 "$(regsvr 32 /u "$(dll 32)")" "syswow64's regsvr32 unregisters the x86 server"
check "created 00000000-0000-0000-0000-000000000000" "$(created 64)" "the x64 server stays usable"
check "not created 800a01ad" "$(created 32)" "a 32-bit host no longer finds the class"
check "$(dll 64)" "$(value "$typelib\\win64")" "the win64 entry stays"
check "" "$(value "$typelib\\win32")" "the win32 entry is gone"
check 0 "$(regsvr 64 /u "$(dll 64)")" "regsvr32 unregisters the x64 server"
check "" "$(ours)" "no key of ours is left"

for bits in 64 32; do
  check 0 "$(regsvr "$bits" /n /i:user "$(dll "$bits")")" "regsvr32 /n /i:user registers the $bits-bit server per user"
  check "{B2917C1B-10DC-4491-904D-CE3C9EE9110A}" \
    "$(value 'HKCU\Software\Classes\Quillbank.Functions\CLSID' "/reg:$bits")" "the user's classes name the class"
  check "" "$(value 'HKLM\Software\Classes\Quillbank.Functions\CLSID' "/reg:$bits")" "nothing per machine"
  check 0 "$(regsvr "$bits" /u /n /i:user "$(dll "$bits")")" "regsvr32 /u /n /i:user unregisters it"
  check "" "$(ours)" "no key of ours is left after the $bits-bit per-user registration"
done

# Registration-free: with no key of ours, each bitness's host creates every
# class from its own folder through the side-by-side manifests.
for bits in 64 32; do
  output="$(run "$(windows_path "$(build_folder "$bits")/tests/com/regfree/regfree_host.exe")")" || failed=1
  printf '%s\n' "$output"
  printf '%s\n' "$output" | grep -qx 'END-OF-SUITE' || failed=1
done
check "" "$(ours)" "the registration-free hosts wrote no key of ours"

if [ "$failed" -eq 0 ]; then echo "END-OF-SUITE"; fi
exit "$failed"
