#!/usr/bin/env bash
# Installs the Debian packages the build needs, when they are missing.
# Usage: tools/install-deps.sh [extra-package ...]
set -euo pipefail

# gpsd-clients (gpsdecode) and rtklib (convbin) are independent RTCM 3 decoders that the
# format library's tests compare with; msgscan reads sockets and serial ports (Qt Network is in
# qtbase, Qt SerialPort apart), and its tests serve streams with rtklib's str2str and make
# serial port pairs with socat. msgmonitor's window (Qt Widgets, in qtbase) is tested and
# pictured without a display, with fonts it finds through fontconfig. Qt's linguist tools
# (lupdate, lrelease and their CMake packages) build the catalogues of translations/,
# dpkg-dev's dpkg-shlibdeps gives the Debian packages their dependencies, and doxygen with
# graphviz renders the API documentation. clang and its libFuzzer runtime build the fuzz
# targets (tools/run-fuzz.sh); python3 cuts their seed frames from the captures.
packages=(cmake g++ make pkg-config qtbase5-dev qt6-base-dev qt6-5compat-dev
    libqt5serialport5-dev qt6-serialport-dev gpsd-clients rtklib socat fonts-dejavu-core
    qttools5-dev qttools5-dev-tools qt6-tools-dev qt6-l10n-tools dpkg-dev doxygen graphviz
    clang libclang-rt-14-dev python3 "$@")
missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' \
        || missing+=("$package")
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    sudo_cmd=()
    [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
    "${sudo_cmd[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
