#!/usr/bin/env bash
# Builds the fuzz targets (preset "fuzz": clang 14, libFuzzer, AddressSanitizer
# and UndefinedBehaviorSanitizer) and runs every target for SECONDS seconds.
#
#   scripts/fuzz.sh SECONDS [TARGET...]
#
# Corpora grow in build/fuzz/corpus/<target> (seeded from fuzz/seeds and the
# golden files in tests/data); a crashing input is kept in
# build/fuzz/findings/<target>/ and the script fails. Logs are in
# build/fuzz/logs/. FUZZ_JOBS=N runs N targets at once (default 1).
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:?usage: scripts/fuzz.sh SECONDS [TARGET...]}
shift
all_targets=(lesson_fuzz ppc_fuzz child_element_fuzz base64_fuzz format_xml_fuzz round_trip_fuzz)
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then targets=("${all_targets[@]}"); fi

scripts/setup.sh
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$(nproc)" --target "${targets[@]}"

out=build/fuzz
mkdir -p "$out/logs"

# The golden files each target starts from, besides fuzz/seeds/<target>.
seeds_of() {
    case "$1" in
        lesson_fuzz | round_trip_fuzz) echo tests/data/lesson_normal.xml tests/data/lesson_clear.xml ;;
        ppc_fuzz) echo tests/data/properties/*.xml ;;
        child_element_fuzz) echo tests/data/elements/ce.xml tests/data/elements/ce_clear.xml ;;
        format_xml_fuzz) echo tests/data/*.xml tests/data/*/*.xml ;;
        *) ;;
    esac
}

run_one() {
    local target=$1
    local corpus="$out/corpus/$target" findings="$out/findings/$target/"
    mkdir -p "$corpus" "$findings"
    # shellcheck disable=SC2046
    cp -n $(seeds_of "$target") "$corpus"/ 2>/dev/null || true
    if [ -d "fuzz/seeds/$target" ]; then cp -n fuzz/seeds/"$target"/* "$corpus"/ 2>/dev/null || true; fi
    if [ "$target" = base64_fuzz ]; then cp -n fuzz/seeds/base64/* "$corpus"/ 2>/dev/null || true; fi
    local dict=()
    if [ "$target" != base64_fuzz ]; then dict=(-dict=fuzz/xml.dict); fi
    if ASAN_OPTIONS="detect_leaks=1:abort_on_error=1" UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1" \
        "$out/fuzz/$target" "$corpus" "${dict[@]}" -max_total_time="$seconds" -max_len=65536 -timeout=20 \
        -rss_limit_mb=2560 -print_final_stats=1 -artifact_prefix="$findings" >"$out/logs/$target.log" 2>&1; then
        echo "$target: $(grep -E '^#[0-9]+.*(DONE|pulse|NEW|REDUCE)' "$out/logs/$target.log" | tail -1)"
        echo "$target: $(grep -E 'stat::number_of_executed_units' "$out/logs/$target.log")"
    else
        echo "$target: FINDING, see $out/logs/$target.log and $findings" >&2
        tail -40 "$out/logs/$target.log" >&2
        return 1
    fi
}

jobs=${FUZZ_JOBS:-1}
status=0
pids=()
for target in "${targets[@]}"; do
    run_one "$target" &
    pids+=($!)
    if [ ${#pids[@]} -ge "$jobs" ]; then
        wait "${pids[0]}" || status=1
        pids=("${pids[@]:1}")
    fi
done
for pid in "${pids[@]}"; do wait "$pid" || status=1; done
exit $status
