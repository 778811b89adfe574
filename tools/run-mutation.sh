#!/usr/bin/env bash
# Measures the mutation score of the core test suite: how many small faults planted one at a
# time in the library's sources the tests catch. The measuring tool edits sources in place, so
# this runs it on a fresh clone of the committed tree in a temporary folder, never on the work
# tree. Arguments go to the tool (default: --seed 1 --count 150); the survivors it prints are
# behaviours that no test pins.
# Usage: tools/run-mutation.sh [--seed S] [--count N] [--report FILE]
set -euo pipefail
cd "$(dirname "$0")/.."

tool=$(cd ../shared/tools 2>/dev/null && pwd)/mutation-score
[ -x "$tool" ] || { echo "run-mutation: ../shared/tools/mutation-score not found" >&2; exit 1; }
[ $# -gt 0 ] || set -- --seed 1 --count 150

bash tools/install-deps.sh python3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
git clone -q . "$work/src"
cd "$work/src"
cmake -S . -B build/mut -DCMAKE_BUILD_TYPE=None -DCMAKE_CXX_FLAGS=-O0 >/dev/null
cmake --build build/mut -j"$(nproc)" >/dev/null
python3 "$tool" --build build/mut "$@" \
    --suite "tests=ctest --test-dir build/mut/tests -j$(nproc) --timeout 30 -E 'install|consumer' --stop-on-failure"
