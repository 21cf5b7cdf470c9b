#!/usr/bin/env bash
# Makes the Debian packages of a build and looks into them: debs.sh BUILD VERSION
set -euo pipefail
version=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cpack --config "$1/CPackConfig.cmake" -B "$scratch" >"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }
arch=$(dpkg --print-architecture)
library=$scratch/libzetdisplay${version%%.*}_${version}_$arch.deb
dev=$scratch/libzetdisplay-dev_${version}_$arch.deb
tool=$scratch/zetplay_${version}_$arch.deb

failed=0
# PACKAGE, FIELD, words that the field must hold
field() {
    local value
    value=$(dpkg-deb -f "$1" "$2")
    for word in "${@:3}"; do
        grep -qF -- "$word" <<<"$value" || { echo "${1##*/}: $2 lacks $word: $value"; failed=1; }
    done
}
# PACKAGE, patterns of all files and links in it
holds() {
    local files
    files=$(dpkg-deb --fsys-tarfile "$1" | tar -t | grep -v '/$')
    for pattern in "${@:2}"; do
        grep -q -- "$pattern" <<<"$files" || { echo "${1##*/}: no file $pattern"; failed=1; }
        files=$(grep -v -- "$pattern" <<<"$files" || true)
    done
    [ -z "$files" ] || { echo "${1##*/}: unexpected $files"; failed=1; }
}

own="libzetdisplay${version%%.*} (= $version)"
field "$library" Depends libc6 libegl1 libgles2 libfreetype6 libavfilter libavutil
field "$dev" Depends "$own"
field "$tool" Depends "$own" libsdl2 libavformat libavcodec libswscale libpng
changes=('/doc/[^/]*/changelog\.gz$' '/doc/[^/]*/NEWS\.gz$')
holds "$library" 'libZETDisplay\.so\.[0-9.]*$' "${changes[@]}"
holds "$dev" '/include/zet/[a-z]*\.h$' 'libZETDisplay\.so$' '/ZETDisplay[A-Za-z-]*\.cmake$' '/zetdisplay\.pc$' "${changes[@]}"
holds "$tool" '/bin/zetplay$' '/man1/zetplay\.1\.gz$' "${changes[@]}"
control=$(dpkg-deb --ctrl-tarfile "$library" | tar -t | grep -v '/$' | sort | paste -sd ' ')
[ "$control" = './control ./md5sums ./shlibs ./triggers' ] || { echo "${library##*/}: control files $control"; failed=1; }

for package in "$library" "$tool"; do dpkg-deb -x "$package" "$scratch/root"; done
"$scratch/root/usr/bin/zetplay" --version | grep -qF "$version" || { echo 'zetplay does not run'; failed=1; }
exit $failed
