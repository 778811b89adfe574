#!/usr/bin/env bash
# Builds the library with Qt 6 and runs msgscan, the stream scanner, on the bundled RTCM 3 stream
# of a reference station (examples/data/station.rtcm3): what is in it, at what rates, what is
# missing or broken, and where the station is. Installs missing Debian packages first.
# Usage: tools/run-demo.sh [msgscan arguments]   (any argument replaces the bundled stream)
set -euo pipefail
cd "$(dirname "$0")/.."

bash tools/install-deps.sh
cmake --preset qt6 >/dev/null
cmake --build --preset qt6 -j"$(nproc)" --target msgscan >/dev/null
if [ $# -eq 0 ]; then
    set -- examples/data/station.rtcm3
fi
exec build/qt6/apps/msgscan/msgscan "$@"
