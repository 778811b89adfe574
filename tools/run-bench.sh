#!/usr/bin/env bash
# Builds the library in release mode with the benchmarks and runs them; prints the goal table.
# Installs missing Debian packages first. Extra arguments go to the benchmark program
# (e.g. --benchmark_filter=EventLog).
set -euo pipefail
cd "$(dirname "$0")/.."

bash tools/install-deps.sh libbenchmark-dev
cmake --preset bench >/dev/null
cmake --build --preset bench -j"$(nproc)" --target messageapibench >/dev/null
exec build/bench/bench/messageapibench "$@"
