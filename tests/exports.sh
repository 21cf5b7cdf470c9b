#!/usr/bin/env bash
# Checks what a library exports: names of namespace zet alone, and exactly those of a list.
#   exports.sh LIBRARY LIST           names each symbol that has vanished or come
#   exports.sh --write LIBRARY LIST   makes the list anew
set -euo pipefail
export LC_ALL=C
write=
[ "$1" != --write ] || { write=yes; shift; }
scratch=$(mktemp)
trap 'rm -f "$scratch"' EXIT
nm -D --defined-only "$1" | awk '{ print $NF }' | sort -u >"$scratch"

if others=$(c++filt <"$scratch" | grep -vE '^((vtable|typeinfo|typeinfo name|VTT) for )?zet::'); then
    printf 'exported, but not of namespace zet:\n%s\n' "$others"
    exit 1
fi
[ -z "$write" ] || { cp "$scratch" "$2"; exit; }

# TITLE, SYMBOLS, what to do
tell() {
    [ -n "$2" ] || return 0
    echo "$1:"
    while read -r symbol; do
        echo "    $symbol $(c++filt "$symbol")"
    done <<<"$2"
    echo "$3"
}
gone=$(comm -23 "$2" "$scratch")
new=$(comm -13 "$2" "$scratch")
tell Vanished "$gone" "Programs that were linked to them don't start any more. Keep them, or raise the first number of the version."
tell New "$new" "If they are meant for players, raise the second number of the version; otherwise don't mark them for export."
[ -z "$gone$new" ] || { echo "Then make the list anew: tests/exports.sh --write ${1##*/} ${2##*/}, with their places"; exit 1; }
