#!/usr/bin/env bash
# Builds the libFuzzer targets of fuzz/ (preset fuzz: clang, AddressSanitizer,
# UndefinedBehaviorSanitizer) and runs each for SECONDS (default 1800) or 10^8 executions,
# whichever comes first, one after the other, one process each. Then feeds a stream of
# MESSAGEAPI_LONG_STREAM_BYTES (default 1 GiB) through the RTCM 3 framer, decoder, statistics
# and event log (the Qt 6 build's tst_rtcm3longstream).
#
# Usage: tools/run-fuzz.sh [SECONDS] [--no-long-stream]
#
# Each target starts from its seeds (fuzz/corpus/<target>/) and the inputs of past findings
# (fuzz/regressions/<target>/), the RTCM 3 target also from frames cut from the captures in
# ../shared/data/rtcm/ when they are there. What a run learns stays in build/fuzz/corpus/ for
# the next run. Prints one line per target; a finding is kept in build/fuzz/findings/ and
# makes the script fail.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=1800
long_stream=1
for argument in "$@"; do
    case "$argument" in
    --no-long-stream) long_stream=0 ;;
    *) seconds=$argument ;;
    esac
done

bash tools/install-deps.sh
targets=(fieldvalue_fuzzer pathexpression_fuzzer rtcm3_fuzzer)
jobs=$(nproc)
# Quiet builds that show their output when they fail.
build() {
    local preset=$1
    shift
    local log
    log=$(mktemp)
    if ! { cmake --preset "$preset" && cmake --build --preset "$preset" -j"$jobs" --target "$@"; } \
        >"$log" 2>&1; then
        tail -n 40 "$log"
        rm -f "$log"
        exit 1
    fi
    rm -f "$log"
}
build fuzz "${targets[@]}"

captures=../shared/data/rtcm
# Up to three frames of each message number of every capture, each a corpus input of one chunk.
cut_capture_frames() {
    python3 - "$captures" "$1" <<'EOF'
import os, sys

def crc24q(data):
    crc = 0
    for byte in data:
        crc ^= byte << 16
        for _ in range(8):
            crc <<= 1
            if crc & 0x1000000:
                crc ^= 0x1864CFB
    return crc & 0xFFFFFF

source, target = sys.argv[1], sys.argv[2]
for name in sorted(os.listdir(source)):
    if name.endswith('.md'):
        continue
    data = open(os.path.join(source, name), 'rb').read()
    seen = {}
    i = 0
    while i + 6 <= len(data):
        if data[i] != 0xD3 or data[i + 1] & 0xFC:
            i += 1
            continue
        end = i + 6 + ((data[i + 1] & 3) << 8 | data[i + 2])
        if end > len(data) or crc24q(data[i:end - 3]) != int.from_bytes(data[i:end][-3:], 'big'):
            i += 1
            continue
        number = (data[i + 3] << 4 | data[i + 4] >> 4) if end - i > 7 else -1
        seen[number] = seen.get(number, 0) + 1
        if seen[number] <= 3:
            with open(os.path.join(target, '%s-%d-%d' % (name, number, seen[number])), 'wb') as f:
                f.write(b'\x00' + data[i:end])
        i = end
EOF
}

mkdir -p build/fuzz/findings
status=0
for target in "${targets[@]}"; do
    corpus=build/fuzz/corpus/$target
    mkdir -p "$corpus"
    cp -n fuzz/corpus/"$target"/* "$corpus"/
    [ -d fuzz/regressions/"$target" ] && cp -n fuzz/regressions/"$target"/* "$corpus"/
    if [ "$target" = rtcm3_fuzzer ] && [ -d "$captures" ]; then
        cut_capture_frames "$corpus"
    fi
    options=(-max_total_time="$seconds" -runs=100000000 -timeout=20 -rss_limit_mb=2048
             -max_len=4096 -print_final_stats=1
             -artifact_prefix=build/fuzz/findings/"$target"-)
    [ -f fuzz/"$target".dict ] && options+=(-dict=fuzz/"$target".dict)
    log=build/fuzz/$target.log
    result=0
    build/fuzz/fuzz/"$target" "${options[@]}" "$corpus" >"$log" 2>&1 || result=$?
    runs=$(grep -oE 'stat::number_of_executed_units: [0-9]+' "$log" | grep -oE '[0-9]+$' || true)
    coverage=$(grep -E '^#[0-9]+.*cov: ' "$log" | tail -n 1 | grep -oE 'cov: [0-9]+ ft: [0-9]+' || true)
    if [ "$result" -eq 0 ]; then
        echo "$target: ${runs:-?} executions, ${coverage:-no coverage line}, no finding"
    else
        finding=$(grep -oE 'Test unit written to [^ ]+' "$log" | tail -n 1 | sed 's/Test unit written to //')
        echo "$target: FINDING after ${runs:-?} executions: ${finding:-see $log}"
        grep -E '^(==[0-9]+==ERROR|SUMMARY|.*runtime error|fatal|assertion report|.* parses back as)' "$log" | head -n 5
        status=1
    fi
done

if [ "$long_stream" -eq 1 ]; then
    build qt6 tst_rtcm3longstream
    MESSAGEAPI_LONG_STREAM_BYTES=${MESSAGEAPI_LONG_STREAM_BYTES:-1073741824} LC_ALL=C \
        build/qt6/formats/rtcm3/tests/tst_rtcm3longstream || status=1
fi
exit "$status"
