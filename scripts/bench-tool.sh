#!/usr/bin/env bash
# Measures the quillbank tool: a folder of 1,000 generated lessons checked
# with one job and with one a core (the speed-up of the parallel batch), and
# single-file commands on one large lesson beside `xmllint --noout` on the
# same file (view among them: the HTML page of the large lesson). Release
# build; the lessons go to build/release/tool-bench/.
# Arguments: [LESSONS STORYBOARDS_EACH LARGE_STORYBOARDS] (default 1000 20
# 14000: about 100 MB).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
command -v xmllint > /dev/null || { echo "xmllint is needed (apt-get install libxml2-utils)" >&2; exit 1; }

count=${1:-1000}
each=${2:-20}
large=${3:-14000}

cmake --preset release > /dev/null
cmake --build --preset release -j "$(nproc)" --target quillbank_tool quillbank_write_lessons
tool=build/release/tools/quillbank/quillbank
work=build/release/tool-bench
rm -rf "$work"
mkdir -p "$work"
build/release/bench/quillbank_write_lessons "$work/folder" "$count" "$each"
build/release/bench/quillbank_write_lessons "$work/large" 1 "$large"
big="$work/large/lesson-0001.xml"
echo "folder: $count lessons, $(du -sm "$work/folder" | cut -f1) MB; large lesson: $(du -m "$big" | cut -f1) MB"
echo "cores: $(nproc)"

# The best of three wall times of a command, in seconds.
best() {
  local best=""
  for _ in 1 2 3; do
    local start end t
    start=$(date +%s.%N)
    "$@" > /dev/null 2>&1 || true
    end=$(date +%s.%N)
    t=$(echo "$end - $start" | bc -l)
    if [ -z "$best" ] || [ "$(echo "$t < $best" | bc -l)" = 1 ]; then best=$t; fi
  done
  printf '%.3f' "$best"
}

one=$(best "$tool" check -j 1 "$work/folder")
all=$(best "$tool" check "$work/folder")
printf 'check, %s lessons: -j 1 %ss, one job a core %ss, speed-up %.2f\n' "$count" "$one" "$all" \
  "$(echo "$one / $all" | bc -l)"
one=$(best "$tool" info -j 1 "$work/folder")
all=$(best "$tool" info "$work/folder")
printf 'info, %s lessons: -j 1 %ss, one job a core %ss, speed-up %.2f\n' "$count" "$one" "$all" \
  "$(echo "$one / $all" | bc -l)"

# The least CPU time (user and system) of three runs of a command, in
# seconds: on a shared machine the wall time of one process says more about
# the others.
cpu() {
  local best=""
  for _ in 1 2 3; do
    local t
    /usr/bin/time -f '%U %S' -o "$work/time.txt" "$@" > /dev/null 2>&1 || true
    t=$(awk 'END {print $1 + $2}' "$work/time.txt")
    if [ -z "$best" ] || [ "$(echo "$t < $best" | bc -l)" = 1 ]; then best=$t; fi
  done
  printf '%.2f' "$best"
}

floor=$(cpu xmllint --noout "$big")
printf 'xmllint --noout: %ss CPU\n' "$floor"
for command in "info" "ls" "tree" "props" "check" "normalize -o $work/out.xml" "view -o $work/out.html"; do
  t=$(cpu "$tool" $command "$big")
  printf 'quillbank %s: %ss CPU, %.2f times xmllint\n' "${command%% *}" "$t" "$(echo "$t / $floor" | bc -l)"
done
