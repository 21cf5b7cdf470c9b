#!/usr/bin/env bash
# Installs a build into a folder of its own, builds the example of an outside player against it, once with CMake and
# once with pkg-config, and runs both: install.sh BUILD EXAMPLE
set -euo pipefail
example=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
step() {
    echo "$*"
    "$@" >"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }
}

step cmake --install "$1" --prefix "$scratch/prefix"
# What was built must not lean on the place where it was built: from here on the package stands elsewhere.
mv "$scratch/prefix" "$scratch/moved"

step cmake -S "$example" -B "$scratch/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$scratch/moved"
step cmake --build "$scratch/cmake"
step "$scratch/cmake/embed" --frames 10

pc=$(find "$scratch/moved" -name zetdisplay.pc)
export PKG_CONFIG_PATH=${pc%/*}
read -ra flags < <(pkg-config --cflags --libs zetdisplay x11)
step g++ -std=c++20 -Wall -Wextra -Werror -o "$scratch/plain" "$example/main.cpp" "${flags[@]}"
export LD_LIBRARY_PATH
LD_LIBRARY_PATH=$(pkg-config --variable=libdir zetdisplay)
step "$scratch/plain" --frames 10

# The window of a toolkit.
if pkg-config --exists Qt5Gui; then
    step cmake -S "${example%/*}/qt" -B "$scratch/qt" -G Ninja -DCMAKE_PREFIX_PATH="$scratch/moved"
    step cmake --build "$scratch/qt"
    QT_QPA_PLATFORM=xcb step "$scratch/qt/qtplayer" --frames 10
else
    echo "not tried: examples/qt, as Qt 5 isn't here"
fi
