#!/usr/bin/env bash
# Builds the library in release mode with the benchmarks and runs them; prints the goal table,
# then the median wall time of msgscan --json as a whole process on the largest RTCM 3 capture.
# Installs missing Debian packages first. Extra arguments go to the benchmark program
# (e.g. --benchmark_filter=EventLog).
set -euo pipefail
cd "$(dirname "$0")/.."

bash tools/install-deps.sh libbenchmark-dev
cmake --preset bench >/dev/null
cmake --build --preset bench -j"$(nproc)" --target messageapibench msgscan >/dev/null
build/bench/bench/messageapibench "$@"

capture=../shared/data/rtcm/dropped-packets.rtcm3
if [ -f "$capture" ]; then
    times=()
    for _ in 1 2 3 4 5 6 7; do
        start=$(date +%s%N)
        build/bench/apps/msgscan/msgscan --json --date 2018-07-12 "$capture" >/dev/null
        times+=($(( ($(date +%s%N) - start) / 1000000 )))
    done
    median=$(printf '%s\n' "${times[@]}" | sort -n | sed -n 4p)
    bytes=$(stat -c %s "$capture")
    echo "msgscan --json $(basename "$capture") ($bytes bytes), median of 7 runs: $median ms" \
         "($(( bytes / 1000 / (median > 0 ? median : 1) )) MB/s)"
fi
