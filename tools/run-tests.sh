#!/usr/bin/env bash
# Checks that every file declares its copyright and licence (reuse lint), then builds the library
# with Qt 6, with Qt 5 and with AddressSanitizer+UndefinedBehaviorSanitizer, and runs every test
# in all three builds; the Qt 6 build also renders the API reference, where any Doxygen warning
# fails the run. Then runs every fuzz target for 30 s (tools/run-fuzz.sh). Installs missing
# Debian packages first.
set -euo pipefail
cd "$(dirname "$0")/.."

bash tools/install-deps.sh reuse
echo "=== reuse lint"
report=$(reuse lint) || { echo "$report"; exit 1; }
echo "$report" | tail -n 1
jobs=$(nproc)
passed=0
failed=0
for preset in qt6 qt5 asan; do
    echo "=== $preset"
    docs=OFF
    [ "$preset" = qt6 ] && docs=ON
    cmake --preset "$preset" -DMESSAGEAPI_BUILD_DOCS=$docs >/dev/null
    cmake --build --preset "$preset" -j"$jobs"
    if [ "$docs" = ON ]; then
        echo "=== docs"
        cmake --build --preset "$preset" --target docs
    fi
    log=$(mktemp)
    status=0
    ctest --preset "$preset" -j"$jobs" 2>&1 | tee "$log" || status=$?
    summary=$(grep -E 'tests passed, [0-9]+ tests failed out of [0-9]+' "$log" || true)
    total=$(echo "$summary" | sed -E 's/.* out of ([0-9]+).*/\1/')
    bad=$(echo "$summary" | sed -E 's/.* ([0-9]+) tests failed.*/\1/')
    rm -f "$log"
    if [ -z "$summary" ]; then
        echo "no test summary for $preset"
        exit 1
    fi
    passed=$((passed + total - bad))
    failed=$((failed + bad))
    [ "$status" -eq 0 ] || { echo "tests: $passed passed, $failed failed"; exit "$status"; }
done
echo "tests: $passed passed, $failed failed"
echo "=== fuzz"
bash tools/run-fuzz.sh 30 --no-long-stream
