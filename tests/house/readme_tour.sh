#!/usr/bin/env bash
# Types what the README and the tour tell a newcomer to type; each line must succeed. What is to be
# typed in the clone or as root stands in blocks that are marked as text, and is left out.
# Usage: readme_tour.sh TREE BUILD
set -euo pipefail
tree=$1 build=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cmake --install "$build" --prefix "$scratch/installed" >"$scratch/log"
mkdir "$scratch/sounds"
cd "$scratch/sounds"
export PATH=$scratch/installed/bin:$PATH
export ZEPHYRA_SHARED_FOLDER="$scratch/shared" # not the one of whoever tests
for page in README.md docs/tour.md; do
    awk '/^```/ { inside = !inside; typed = inside && $0 == "```"; next } typed' "$tree/$page" >"$scratch/typed"
    (($(grep -c '^zephyra ' "$scratch/typed") >= 5)) || { echo "$page has too little to type"; exit 1; }
    bash -ex "$scratch/typed"
done
