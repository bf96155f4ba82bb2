#!/usr/bin/env bash
# Types what the README tells a newcomer to type, all but ./run and ./test alone; each must succeed.
# Usage: readme_tour.sh TREE ZEPHYRA
set -euo pipefail
tree=$1 zephyra=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
export ZEPHYRA_SHARED_FOLDER="$scratch/shared" # not the one of whoever tests
ln -s "$tree/resources" resources
printf '#!/bin/bash\nexec "%s" "$@"\n' "$zephyra" >run
chmod +x run
awk '/^```/ { shown = !shown; next } shown && !/^\.\/(run|test) +#/' "$tree/README.md" >tour
(($(grep -c '^\./run ' tour) >= 8)) || { echo "the tour has grown too short"; exit 1; }
bash -ex tour
