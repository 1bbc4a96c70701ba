#!/usr/bin/env bash
# The Windows build reads numbers and dates with OLE Automation's own
# conversions in the user's regional setting, which Wine takes from LANG:
# runs the 64-bit support tests under Wine once per table locale, each time
# checking that the setting in force is that locale and that it reads the
# table's rows for it (tests/data/regional/answers.tsv).
# Needs the windows preset's support_tests (cmake --build --preset windows --target support_tests).
set -euo pipefail
cd "$(dirname "$0")/.."
export WINEPREFIX="${QUILLBANK_LOCALE_PREFIX:-$PWD/build/wineprefix-locale}" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
wine="${WINE:-/usr/lib/wine/wine64}"
[ -f "$WINEPREFIX/system.reg" ] || timeout 600 "$wine" wineboot -i
status=0
for locale in en-US en-GB de-DE fr-FR ja-JP; do
  lang="${locale/-/_}.UTF-8"
  output="$(LANG="$lang" LC_ALL="$lang" timeout 300 "$wine" build/windows/tests/support_tests.exe \
    --gtest_filter='RegionalTableDefault.*' 2>&1 | tr -d '\r')"
  if grep -q '^\[  PASSED  \] 1 test' <<<"$output" && ! grep -q SKIPPED <<<"$output"; then
    echo "PASS $locale"
  else
    echo "FAIL $locale"; echo "$output" | tail -20; status=1
  fi
done
# The sentinel that scripts/test-windows.sh looks for after a suite.
[ "$status" -eq 0 ] && echo END-OF-SUITE
exit $status
