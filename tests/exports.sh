#!/usr/bin/env bash
# Checks that a library exports the names of namespace zet and no others: exports.sh LIBRARY
set -euo pipefail
names=$(nm -D --defined-only "$1" | awk '{ print $NF }' | c++filt)
grep -qxF 'zet::CreateZETDisplay(zet::DisplayConfig*, zet::GlobalConfiger*)' <<<"$names" ||
    { echo "CreateZETDisplay is not exported"; exit 1; }
if others=$(grep -vE '^((vtable|typeinfo|typeinfo name|VTT) for )?zet::' <<<"$names"); then
    printf 'exported, but not of namespace zet:\n%s\n' "$others"
    exit 1
fi
