#!/usr/bin/env bash
# Every file that a page names must be there: links, and names of folders and files in code marks. links.sh TREE
# Checks: [text](file#part), also that the part is a heading of that page, and `folder/file`, with NAME
# for what the reader chooses.
set -euo pipefail
cd "$1"
mapfile -t pages < <(find . -name '*.md' -not -path './build*' -not -path './.git/*' | sort)
[ "${#pages[@]}" -gt 0 ] || { echo 'no pages found'; exit 1; }

# Headings of a page as the anchors that they get.
anchors() {
    sed -n 's/^#\{1,6\} //p' "$1" | tr '[:upper:]' '[:lower:]' | sed 's/[^a-z0-9 _-]//g; s/ /-/g'
}

failed=0
mark='`'
complain() {
    echo "$1 names $2, which isn't there"
    failed=1
}
for page in "${pages[@]}"; do
    folder=${page%/*}
    while read -r target; do
        file=${target%%#*}
        file=${file:+$folder/$file}
        [ -e "${file:-$page}" ] || { complain "$page" "$target"; continue; }
        [[ $target != *#* ]] || anchors "${file:-$page}" | grep -qxF -- "${target#*#}" || complain "$page" "$target"
    done < <(grep -oE '\]\([^) ]+\)' "$page" | sed 's/^](//; s/)$//' | grep -v '://')
    while read -r name; do
        [[ $name == *NAME* ]] || [ -e "$name" ] || complain "$page" "$name"
    done < <(grep -oE "$mark"'(\./)?(\.ci|benchmarks|cmake|docs|examples|include|player|src|tests|tools)/[A-Za-z0-9_./-]*'"$mark" "$page" |
                 tr -d "$mark")
done
exit $failed
