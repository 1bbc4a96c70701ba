#!/usr/bin/env bash
# Sets up, builds in release mode and runs the benchmark suite. Arguments are
# passed to the benchmark program (for example --benchmark_filter=FromXML).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh

cmake --preset release
cmake --build --preset release -j "$(nproc)" --target quillbank_benchmarks quillbank_json_benchmarks
build/release/bench/quillbank_benchmarks "$@"
build/release/bench/quillbank_json_benchmarks "$@"
