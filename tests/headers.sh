#!/usr/bin/env bash
# Compiles each public header alone, as C++17 and as C++20, with each compiler that is here; then tries what must
# compile and what must not: headers.sh INCLUDE COMPILER
set -euo pipefail
include=$1
compilers=("$2")
for other in g++ clang++; do
    command -v "$other" >/dev/null && compilers+=("$other")
done

compile() {
    "$1" "-std=$2" -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -fsyntax-only -I "$include" -x c++ -
}

for compiler in "${compilers[@]}"; do
    for standard in c++17 c++20; do
        for header in "$include"/zet/*.h; do
            echo "#include \"zet/${header##*/}\"" | compile "$compiler" "$standard"
        done
    done
done

statement() {
    printf '%s\n' '#include "zet/zet.h"' 'using namespace zet;' \
        "void f(DisplayConfig& bus, DragPoints& drag, Fling& fling, const SnapData& filled) { (void)drag; (void)fling;" \
        "(void)filled; $1; }" | compile "${compilers[0]}" c++17 2>/dev/null
}

# Handles of the types that toolkits use, and numbers of every type that makes sense.
while read -r good; do
    statement "$good" || { echo "doesn't compile: $good"; exit 1; }
done <<'END'
bus.setConfig(DCFG_WINDOW_INSTANCE, 5ull)
bus.setConfig(DCFG_WINDOW_INSTANCE, 5u)
bus.setConfig(DCFG_WINDOW_INSTANCE, 0)
bus.setConfig(DCFG_WINDOW_INSTANCE, static_cast<void*>(&bus))
bus.setConfig(DCFG_WINDOW_INSTANCE, nullptr)
bus.setConfig(DCFG_SCALE, 3)
bus.setConfig(DCFG_RENDER_MODE, RENDER_MODE_MAP)
bus.setConfig(DCFG_CLEAR_COLOR, 0xff0000)
bus.setConfig(DCFG_DRAG, &drag)
bus.setConfig(DCFG_DRAG, nullptr)
bus.setConfig(DCFG_FLING, SizeHelp{&fling, int{sizeof fling}})
bus.setConfig(DCFG_OVERLAY_IMAGE, OverlayRect{}, "logo.bmp")
bus.setConfig(DCFG_RENDER_REQUEST, nullptr)
END
while read -r wrong; do
    ! statement "$wrong" || { echo "compiles: $wrong"; exit 1; }
done <<'END'
bus.setConfig(DCFG_DRAG, &fling)
bus.setConfig(DCFG_FLING, &drag)
bus.setConfig(DCFG_YUV_FRAME, 1)
bus.setConfig(DCFG_SNAP, &filled)
bus.setConfig(DCFG_RENDER_MODE, 1.0)
bus.setConfig(DCFG_RENDER_MODE, &drag)
bus.setConfig(DCFG_SCALE, nullptr)
bus.setConfig(DCFG_WINDOW_INSTANCE, 1.0)
bus.setConfig(DCFG_RENDER_REQUEST, 1)
bus.setConfig(DCFG_OVERLAY_IMAGE, "logo.bmp")
END
