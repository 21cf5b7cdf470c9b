#!/usr/bin/env bash
# Builds a preset, quietly unless it fails: tools/build.sh PRESET [TARGET...]
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
preset=$1
shift
tree=$top/build/$preset

[ -e "$tree/build.ninja" ] || echo "Building in build/$preset; the first time takes some minutes." >&2
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { cmake -S "$top" --preset "$preset" && cmake --build "$tree" --target "${@:-all}"; } >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi
