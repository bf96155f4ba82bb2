#!/usr/bin/env bash
# Instructions per grain-sample of the whole engine (scheduler, grains, mix), counted by callgrind:
# the same number on a busy machine and an idle one. Usage: instruction_gate.sh PROGRAM FRAMES LIMIT [effects]
set -euo pipefail
program=$1 frames=$2 limit=$3 effects=${4:-}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
ZEPHYRA_CPU_LEVEL=v3 valgrind --tool=callgrind --callgrind-out-file="$scratch/out" --collect-atstart=no \
    '--toggle-collect=*renderCollected*' \
    "$program" "$frames" $effects >"$scratch/stdout" 2>"$scratch/stderr" || { cat "$scratch/stderr"; exit 1; }
instructions=$(awk '/Collected :/ {print $NF}' "$scratch/stderr")
samples=$(awk '/^grain-samples/ {print $2}' "$scratch/stdout")
awk -v i="$instructions" -v s="$samples" -v limit="$limit" -v frames="$frames" 'BEGIN {
    if (s < 100000 || i < s) { print "nothing was measured"; exit 1 }
    printf "%.2f instructions per grain-sample at %d frames, at most %s\n", i / s, frames, limit
    exit !(i / s <= limit)
}'
