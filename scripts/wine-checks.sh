# Sourced after scripts/wine-env.sh by the registration and package tests:
#   check WANT GOT NAME    prints "ok NAME" or "not ok NAME" and sets failed=1
#   run PROGRAM ARGS...    runs a Windows program, its output without CRs
#   dll 64|32              the Windows path of that bitness's built server
#   regsvr 64|32 ARGS...   that bitness's regsvr32 /s ARGS; prints its exit code
#   created 64|32          "created ..." when that bitness's cscript creates
#                          Quillbank.Functions, else "not created <error>"
#   value KEY [/reg:NN]    a key's default text value, empty when missing
#   ours                   the keys of ours that exist (every class, ProgID,
#                          interface and the type library, both views,
#                          machine and user), empty when there are none
failed=0
check() {
  if [ "$1" = "$2" ]; then echo "ok $3"; else echo "not ok $3 -- expected [$1], got [$2]"; failed=1; fi
}
run() { timeout 300 "${wine[@]}" "$@" 2>/dev/null | tr -d '\r'; }
dll() { windows_path "$(build_folder "$1")/src/com/Quillbank.dll"; }
regsvr() { run "$(system_folder "$1")\\regsvr32.exe" /s "${@:2}"; echo $?; }
created() { run "$(system_folder "$1")\\cscript.exe" //nologo "$(windows_path tests/com/hosts/create_functions.js)"; }
value() { run reg query "$1" /ve "${@:2}" | sed -n 's/.*REG_SZ *//p'; }
ours() { run "$(windows_path build/windows/tests/com/registration_test.exe)" --list | head -c 2000; }
