#!/usr/bin/env bash
# Builds a preset, quietly unless it fails: tools/build.sh PRESET [TARGET...]
# Warnings are errors in all presets. With ZET_WERROR=OFF in the environment they aren't, for a compiler that knows more.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
preset=$1
shift
tree=$top/build/$preset

[ -e "$tree/build.ninja" ] || echo "Building in build/$preset; the first time takes some minutes." >&2
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { cmake -S "$top" --preset "$preset" ${ZET_WERROR:+-DZET_WERROR="$ZET_WERROR"} &&
        cmake --build "$tree" --target "${@:-all}"; } >"$log" 2>&1; then
    cat "$log" >&2
    ! grep -qF '[-Werror' "$log" || echo 'Warnings are errors here; ZET_WERROR=OFF in the environment builds in spite of them.' >&2
    exit 1
fi
