#!/usr/bin/env bash
# Checks that the includes of src/ and player/ follow allowed.txt: arrows.sh ROOT
# Prints each include that doesn't and then fails.
set -euo pipefail
allowed=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/allowed.txt
cd "$1"

# Files of the project: all other includes are the system's.
list=$(mktemp)
trap 'rm -f "$list"' EXIT
find include src player -name '*.h' -o -name '*.cpp' | LC_ALL=C sort >"$list"
mapfile -t sources < <(grep -E '^(src|player)/' "$list")
[ ${#sources[@]} -gt 0 ] || { echo "no sources under $1"; exit 1; }

awk -v allowed="$allowed" -v list="$list" '
function folder(path) { sub(/[^\/]*$/, "", path); return path }

# a/b/../c becomes a/c
function flat(path) {
    while (sub(/[^\/.]+\/\.\.\//, "", path)) {}
    gsub(/\.\//, "", path)
    return path
}

function matches(path, name,    pattern) {
    pattern = name
    gsub(/\./, "\\.", pattern)
    return path ~ "^" pattern (name ~ /\/$/ ? "[^/]*$" : "$")
}

function permitted(from, to,    i, stem) {
    if (to ~ /^include\/zet\//) return 1
    if (folder(from) == folder(to)) {
        # A view never includes another view.
        stem = from
        sub(/\.(cpp|h)$/, ".h", stem)
        if (to == stem || to !~ /^src\/views\/.*render\.h$/) return 1
    }
    for (i = 0; i < rules; i++)
        if (matches(from, left[i]) && matches(to, right[i])) return 1
    return 0
}

BEGIN {
    rules = 0
    while ((getline line < list) > 0) known[line] = 1
    while ((getline line < allowed) > 0) {
        if (line ~ /^ *(#|$)/) continue
        count = split(line, words, / +/)
        for (i = 3; i <= count; i++) { left[rules] = words[1]; right[rules++] = words[i] }
    }
}

/^[ \t]*#[ \t]*include[ \t]*["<]/ {
    quoted = /include[ \t]*"/
    name = $0
    gsub(/^[^"<]*["<]|[">].*$/, "", name)
    if ((to = flat(folder(FILENAME) name)) in known || (to = flat("src/" name)) in known ||
        (to = flat("include/" name)) in known || (to = flat("player/" name)) in known ||
        (to = flat(name)) in known) {
        if (permitted(FILENAME, to)) next
        print FILENAME ":" FNR ": must not include " to
        bad++
    } else if (quoted) {
        print FILENAME ":" FNR ": includes " name ", which is nowhere in the project"
        bad++
    }
}

END { exit bad > 0 }
' "${sources[@]}"
