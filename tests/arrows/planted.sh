#!/usr/bin/env bash
# Plants a small tree with right and wrong includes, and expects arrows.sh to find just the wrong ones.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT

# plant FILE INCLUDE...: adds the includes to the file
plant() {
    local file=$tree/$1
    shift
    mkdir -p "$(dirname "$file")"
    touch "$file"
    [ $# -eq 0 ] || printf '#include %s\n' "$@" >>"$file"
}

for header in include/zet/zet.h src/common/busstore.h src/config/door.h src/display/display.h \
    src/overlay/textfilter.h src/overlay/airectrender.h src/render/render.h src/render/matrix.h \
    src/views/onerender.h src/views/tworender.h src/views/halfspherescene.h src/views/parts/dome.h player/window.h; do
    plant "$header"
done

plant player/window.cpp '"window.h"' '"zet/zet.h"' '<SDL.h>'
plant src/display/display.cpp '"display/display.h"' '"render/render.h"' '"overlay/textfilter.h"' '"common/busstore.h"'
plant src/render/render.cpp '"render/render.h"' '"config/door.h"'
plant src/render/renderfactory.cpp '"views/onerender.h"' '"views/tworender.h"'
plant src/views/onerender.cpp '"views/onerender.h"' '"views/parts/dome.h"' '"overlay/airectrender.h"' '"render/render.h"'
plant src/views/halfsphererender.cpp '"views/halfspherescene.h"'
plant src/views/parts/dome.cpp '"views/parts/dome.h"' '"render/matrix.h"' '<cmath>'
if ! "$here/arrows.sh" "$tree"; then
    echo "a right include was refused"
    exit 1
fi

plant player/wrong.cpp '"render/render.h"' '"../src/display/display.h"' '<config/door.h>'
plant src/config/wrong.cpp '"common/busstore.h"'
plant src/display/wrong.cpp '"views/onerender.h"' '"overlay/airectrender.h"'
plant src/overlay/wrong.cpp '"render/render.h"'
plant src/render/wrong.cpp '"display/display.h"' '"nowhere.h"'
plant src/views/wrongrender.cpp '"views/onerender.h"' '"tworender.h"' '"display/display.h"'
plant src/views/parts/wrong.cpp '"render/render.h"' '"views/onerender.h"'
expected='player/wrong.cpp:1 player/wrong.cpp:2 player/wrong.cpp:3
src/config/wrong.cpp:1
src/display/wrong.cpp:1 src/display/wrong.cpp:2
src/overlay/wrong.cpp:1
src/render/wrong.cpp:1 src/render/wrong.cpp:2
src/views/parts/wrong.cpp:1 src/views/parts/wrong.cpp:2
src/views/wrongrender.cpp:1 src/views/wrongrender.cpp:2 src/views/wrongrender.cpp:3'
if found=$("$here/arrows.sh" "$tree"); then
    echo "the wrong includes were let through"
    exit 1
fi
diff <(tr ' ' '\n' <<<"$expected" | sort) <(cut -d: -f1,2 <<<"$found" | sort)
