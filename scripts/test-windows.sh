#!/usr/bin/env bash
# Cross-builds the Windows in-process server with MinGW-w64 for x64 (preset
# windows) and for x86 (preset windows32) and tests both under Wine, as a
# 64-bit Windows holds them: one 64-bit prefix (build/wineprefix) with both
# servers registered, the 64-bit programs run from system32 and the 32-bit
# ones (cscript, regsvr32) from syswow64. Wine for both bitnesses comes from
# the private Debian root of scripts/wine-root.sh (build/wine-root), whose
# 64-bit and 32-bit libraries always match, whatever the machine's own apt
# holds.
#
# For each bitness: the JScript and VBScript suites through cscript (each
# with the shared checks of tests/com/prelude.js or prelude.vbs in front),
# the early-binding C++ client, the type-library test (records and members
# as hosts import them, against tests/com/type_library_members.txt), and the
# core suites cross-compiled against the MSXML backend (without the tests
# named in tests/com/wine_differences.txt).
# After the suites, a short benchmark run of each bitness prints figures (the
# core operations on the generated lesson of 100 storyboards, then the same
# lesson and a bag of encoded properties through the COM server from
# cscript); it fails the run only when a program reports an error, never for
# its time (docs/performance.md has the full runs).
# Then scripts/test-type-library-patch.sh checks the build's type-library
# patch, scripts/test-registration.sh registration in a prefix of its own,
# and scripts/test-package-windows.sh the package (scripts/package-windows.sh).
# Every suite prints one line per check and a final sentinel line; a suite
# passes only when it exits 0 and its sentinel is there.
#
#   scripts/test-windows.sh            both bitnesses
#   scripts/test-windows.sh 64|32      one of them
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)
bitnesses=(64 32)
if [ $# -gt 0 ]; then bitnesses=("$@"); fi

core_suites=(frame support xml properties elements storyboards maps lesson)
targets=(QuillbankServer early_binding_client type_library_test registration_test regfree_host
  quillbank_steady_benchmarks)
for suite in "${core_suites[@]}"; do targets+=("${suite}_tests"); done

scripts/wine-root.sh make
for bits in "${bitnesses[@]}"; do
  preset=windows
  [ "$bits" = 32 ] && preset=windows32
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -j "$jobs" --target "${targets[@]}"
done

source scripts/wine-env.sh
wine_prefix_ready

failed=0
run_suite() {
  local name="$1"
  shift
  local output status attempt
  # Wine now and then fails to start cscript at all ("ShellExecuteEx
  # failed", or, on a loaded machine, a host that ends without having run a
  # line of the script); that is no result of the suite, so such a start is
  # tried again. A suite that ran prints at least one line.
  for attempt in 1 2 3; do
    status=0
    output="$(timeout 600 "$@" 2>&1 | tr -d '\r')" || status=$?
    if [ -n "$output" ] && ! printf '%s\n' "$output" | grep -q 'ShellExecuteEx failed'; then
      break
    fi
    echo "($name: Wine could not start the program, attempt $attempt)"
  done
  printf '%s\n' "$output"
  if [ "$status" -ne 0 ] || ! printf '%s\n' "$output" | grep -qx 'END-OF-SUITE'; then
    echo "FAILED: $name (exit $status)"
    failed=1
  else
    echo "PASSED: $name"
  fi
}

# The short benchmark run of one bitness: figures only. A run cut by its
# time limit is reported and passes; a program that reports an error fails.
run_benchmarks() {
  local bits="$1" build="$2" status lesson output
  echo "--- Benchmarks of the $bits-bit build under Wine (time per run)"
  status=0
  timeout 120 "${wine[@]}" "$(windows_path "$build/bench/quillbank_steady_benchmarks.exe")" \
    --sizes=100 --min-time=0.2 2>&1 | tr -d '\r' || status=$?
  lesson="$build/bench/lesson-100.txt"
  if [ "$status" -eq 0 ]; then
    timeout 60 "${wine[@]}" "$(windows_path "$build/bench/quillbank_steady_benchmarks.exe")" \
      "--save-lesson=100,$(windows_path "$lesson")" || status=$?
  fi
  if [ "$status" -eq 0 ]; then
    # The script ends with the suite sentinel when every operation ran.
    output="$(timeout 120 "${wine[@]}" "$(system_folder "$bits")\\cscript.exe" //nologo \
      "$(windows_path bench/com_benchmarks.js)" "$(windows_path "$lesson")" 0.2 2>&1 | tr -d '\r')" || status=$?
    printf '%s\n' "$output" | grep -vx 'END-OF-SUITE' || true
    if [ "$status" -eq 0 ] && ! printf '%s\n' "$output" | grep -qx 'END-OF-SUITE'; then
      status=1
    fi
  fi
  if [ "$status" -eq 124 ]; then
    echo "(the $bits-bit benchmark run reached its time limit)"
  elif [ "$status" -ne 0 ]; then
    echo "FAILED: the $bits-bit benchmark run (exit $status)"
    failed=1
  fi
}

skipped="$(sed -e '/^#/d' -e 's/ # .*//' -e '/^$/d' tests/com/wine_differences.txt | paste -sd: -)"
for bits in "${bitnesses[@]}"; do
  build="$(build_folder "$bits")"
  echo "=== The $bits-bit server ($build)"
  if ! timeout 300 "${wine[@]}" "$(system_folder "$bits")\\regsvr32.exe" /s "$(windows_path "$build/src/com/Quillbank.dll")"; then
    echo "FAILED: registering the $bits-bit server"
    failed=1
    continue
  fi

  for script in tests/com/*_test.js tests/com/*_test.vbs; do
    run_suite "$script ($bits-bit)" "${wine[@]}" "$(system_folder "$bits")\\cscript.exe" //nologo "$(suite_script "$script")"
  done
  run_suite "early-binding client ($bits-bit)" "${wine[@]}" "$(windows_path "$build/tests/com/early_binding_client.exe")"
  run_suite "type library ($bits-bit)" "${wine[@]}" "$(windows_path "$build/tests/com/type_library_test.exe")" \
    "$(windows_path tests/com/type_library_members.txt)"

  # The core suites: a run passes when GoogleTest exits 0 after its summary.
  for suite in "${core_suites[@]}"; do
    status=0
    output="$(timeout 900 "${wine[@]}" "$(windows_path "$build/tests/${suite}_tests.exe")" "--gtest_filter=-$skipped" 2>&1 \
      | tr -d '\r')" || status=$?
    printf '%s\n' "$output" | grep -E '^\[  (FAILED|PASSED)|^\[==========\]' || true
    if [ "$status" -ne 0 ] || ! printf '%s\n' "$output" | grep -q '^\[  PASSED  \]'; then
      printf '%s\n' "$output" | grep -B5 -A15 'Failure' | head -100 || true
      echo "FAILED: core suite $suite under Wine ($bits-bit)"
      failed=1
    else
      echo "PASSED: core suite $suite under Wine ($bits-bit)"
    fi
  done

  run_benchmarks "$bits" "$build"
done

# Reading in the user's regional setting, once per table locale (64-bit, the
# machine's own Wine in a prefix of its own).
if [[ " ${bitnesses[*]} " == *" 64 "* ]]; then
  run_suite "regional settings" scripts/test-windows-locales.sh
fi

# Registration in a prefix of its own: both scopes, failures rolled back,
# both servers side by side (needs both bitnesses built).
# The package: unpacked, installed, used and uninstalled in a fresh prefix.
if [ "${#bitnesses[@]}" -eq 2 ]; then
  run_suite "type-library patch" scripts/test-type-library-patch.sh
  run_suite "registration" scripts/test-registration.sh
  run_suite "package" scripts/test-package-windows.sh
fi

exit "$failed"
