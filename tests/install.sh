#!/usr/bin/env bash
# Installs the module into a folder of its own, builds the example of an outside player against it, once with CMake and
# once with pkg-config, and runs both:
#   install.sh BUILD EXAMPLE             what a build holds
#   install.sh --static SOURCE EXAMPLE   a static library, which is built first; runs on a screen of its own
set -euo pipefail
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
step() {
    echo "$*"
    "$@" >"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }
}

build=$1
example=${*: -1}
screen=()
if [ "$1" = --static ]; then
    screen=("$2/tools/virtualscreen.sh")
    build=$scratch/build
    # Debug is the quickest to compile.
    step cmake -S "$2" -B "$build" -G Ninja -DBUILD_SHARED_LIBS=OFF -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG= \
        -DZET_BUILD_PLAYER=OFF -DZET_BUILD_TESTS=OFF
    step cmake --build "$build"
fi

step cmake --install "$build" --prefix "$scratch/prefix"
# What was built must not depend on the place where it was built: from here on the package is elsewhere.
mv "$scratch/prefix" "$scratch/moved"
libraries=$(find "$scratch/moved" -name 'libZETDisplay.*')
[ "$1" != --static ] || [[ $libraries == *.a ]] || { echo "not static alone: $libraries"; exit 1; }

step cmake -S "$example" -B "$scratch/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$scratch/moved"
step cmake --build "$scratch/cmake"
step "${screen[@]}" "$scratch/cmake/embed" --frames 10

pc=$(find "$scratch/moved" -name zetdisplay.pc)
export PKG_CONFIG_PATH=${pc%/*}
read -ra flags < <(pkg-config --cflags --libs zetdisplay x11)
step g++ -std=c++20 -Wall -Wextra -Werror -o "$scratch/plain" "$example/main.cpp" "${flags[@]}"
export LD_LIBRARY_PATH
LD_LIBRARY_PATH=$(pkg-config --variable=libdir zetdisplay)
step "${screen[@]}" "$scratch/plain" --frames 10

# The window of a toolkit.
[ "$1" != --static ] || exit 0
if pkg-config --exists Qt5Gui; then
    step cmake -S "${example%/*}/qt" -B "$scratch/qt" -G Ninja -DCMAKE_PREFIX_PATH="$scratch/moved"
    step cmake --build "$scratch/qt"
    QT_QPA_PLATFORM=xcb step "$scratch/qt/qtplayer" --frames 10
else
    echo "not tried: examples/qt, as Qt 5 isn't here"
fi

# Without a display server.
step cmake -S "${example%/*}/record" -B "$scratch/record" -G Ninja -DCMAKE_PREFIX_PATH="$scratch/moved"
step cmake --build "$scratch/record"
env -u DISPLAY "$scratch/record/record" 3 >"$scratch/pictures"
[ "$(tr -d '\0\377' <"$scratch/pictures" | head -c 1 | wc -c)" = 1 ] || { echo "the recorder's pictures are black"; exit 1; }
