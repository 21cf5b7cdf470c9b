#!/usr/bin/env bash
# Builds the fuzzers and runs them side by side: tools/fuzz.sh [SECONDS [NAME...]], 60 seconds of all without arguments.
# What they find stays in build/fuzz/found/NAME, inputs that fail in build/fuzz/NAME-*.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
seconds=${1-60}
names=("${@:2}")
if [ ${#names[@]} -eq 0 ]; then
    for file in tests/fuzz/*fuzzer.cpp; do
        name=${file##*/}
        names+=("${name%fuzzer.cpp}")
    done
fi
tools/build.sh fuzz fuzzers

declare -A running
for name in "${names[@]}"; do
    mkdir -p "build/fuzz/found/$name"
    "build/fuzz/tests/fuzz/${name}fuzzer" -max_total_time="$seconds" -timeout=10 -artifact_prefix="build/fuzz/$name-" \
        "build/fuzz/found/$name" "tests/fuzz/corpus/$name" >"build/fuzz/$name.log" 2>&1 &
    running[$name]=$!
done
failed=0
for name in "${names[@]}"; do
    if wait "${running[$name]}"; then
        echo "$name: $(tail -n 1 "build/fuzz/$name.log")"
    else
        tail -n 40 "build/fuzz/$name.log"
        failed=1
    fi
done
exit $failed
