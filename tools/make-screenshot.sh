#!/usr/bin/env bash
# Regenerates docs/msgmonitor.png, the README's picture of msgmonitor: builds the monitor (Qt 6
# preset), lets it read the bundled station stream (or the input given) without a display, and
# saves the window once the stream has ended.
# Usage: tools/make-screenshot.sh [msgmonitor options] [input]
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset qt6 >/dev/null
cmake --build --preset qt6 --target msgmonitor -j2
QT_QPA_PLATFORM=offscreen build/qt6/apps/msgmonitor/msgmonitor --screenshot docs/msgmonitor.png "$@"
echo "wrote docs/msgmonitor.png"
