#!/usr/bin/env bash
# Builds the library with Qt 6 and runs the demonstration program: a receiver's recorded stream
# (examples/data/demo-stream.vexa) replayed through the message flow, printing the statistics
# of each message type and the event log. Installs missing Debian packages first.
# Usage: tools/run-demo.sh [stream file]
set -euo pipefail
cd "$(dirname "$0")/.."

bash tools/install-deps.sh
cmake --preset qt6 >/dev/null
cmake --build --preset qt6 -j"$(nproc)" --target messageapidemo >/dev/null
exec build/qt6/examples/messageapidemo "$@"
