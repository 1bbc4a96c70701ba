#!/usr/bin/env bash
# The build's type-library patch (src/com/build_tools/set_double_default.cpp)
# on widl's output of the x64 build: it gives NewFontData's Size its default,
# and it refuses, with its message and exit code 1 and no file written, what
# it must not patch. One line per check, then the sentinel line.
set -euo pipefail
cd "$(dirname "$0")/.."
tool=build/windows/src/com/set_double_default
widl_output=build/windows/src/com/quillbank.tlb.widl
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

failed=0
# The arguments after the input: output, member, parameter, value.
patch() { "$tool" "$@"; }

if patch "$widl_output" "$work/patched.tlb" NewFontData 1 8 && [ -s "$work/patched.tlb" ] &&
  [ "$(stat -c %s "$work/patched.tlb")" -eq $(($(stat -c %s "$widl_output") + 12)) ]; then
  echo "ok NewFontData's Size is patched, the library growing by one 12-byte value"
else
  echo "not ok NewFontData's Size is patched"
  failed=1
fi

printf 'not a type library at all' >"$work/text.tlb"
# Runs the tool on INPUT for MEMBER PARAMETER, expecting MESSAGE, exit code 1
# and no output file.
run_refusal() {
  local message="$1" input="$2" member="$3" parameter="$4" status=0 output
  output="$("$tool" "$input" "$work/out.tlb" "$member" "$parameter" 8 2>&1)" || status=$?
  if [ "$status" -eq 1 ] && [ "$output" = "set_double_default: $message" ] && [ ! -e "$work/out.tlb" ]; then
    echo "ok refuses: $message ($member $parameter)"
  else
    echo "not ok refuses: $message ($member $parameter) -- exit $status, [$output]"
    failed=1
  fi
}
head -c 100 "$widl_output" >"$work/truncated.tlb"
run_refusal "not a type library" "$work/text.tlb" NewFontData 1
run_refusal "the segment directory lies outside the file" "$work/truncated.tlb" NewFontData 1
run_refusal "cannot read $work/missing.tlb" "$work/missing.tlb" NewFontData 1
run_refusal "no member named NoSuchMember" "$widl_output" NoSuchMember 1
run_refusal "the parameter is not a double" "$widl_output" NewFontData 0
run_refusal "NewFontData has no default slots or no such parameter" "$widl_output" NewFontData 9
run_refusal "NewGUID has no default slots or no such parameter" "$widl_output" NewGUID 0
run_refusal "the parameter is not an optional [in] parameter without a default" "$work/patched.tlb" NewFontData 1
status=0
output="$("$tool" "$widl_output" "$work" NewFontData 1 8 2>&1)" || status=$?
if [ "$status" -eq 1 ] && [ "$output" = "set_double_default: cannot write $work" ]; then
  echo "ok refuses: an output that cannot be written"
else
  echo "not ok refuses: an output that cannot be written -- exit $status, [$output]"
  failed=1
fi
status=0
output="$("$tool" 2>&1)" || status=$?
if [ "$status" -eq 1 ] && [ "$output" = "set_double_default: usage: set_double_default IN.tlb OUT.tlb FUNCTION PARAMETER-INDEX VALUE" ]; then
  echo "ok refuses: wrong arguments"
else
  echo "not ok refuses: wrong arguments -- exit $status, [$output]"
  failed=1
fi

if [ "$failed" -eq 0 ]; then echo "END-OF-SUITE"; fi
exit "$failed"
