#!/usr/bin/env bash
# Builds the library with Qt 6 and runs the demonstration program on its bundled input.
# Installs missing Debian packages first. Extra arguments go to the program.
set -euo pipefail
cd "$(dirname "$0")/.."

bash tools/install-deps.sh
cmake --preset qt6 >/dev/null
cmake --build --preset qt6 -j"$(nproc)" --target messageapidemo >/dev/null
exec build/qt6/examples/messageapidemo "$@"
