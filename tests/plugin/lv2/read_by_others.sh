#!/usr/bin/env bash
# read_by_others.sh BUNDLE: sord_validate, lv2ls and lv2info read the bundle and complain of nothing.
set -euo pipefail
bundle=$1
for tool in sord_validate lv2ls lv2info; do
    command -v "$tool" >/dev/null || { echo "$tool is not installed"; exit 77; }
done

# The language's own bundles alone: other plug-ins' faults are not ours.
own=()
for name in atom buf-size core data-access dynmanifest event instance-access log midi morph options \
    parameters patch port-groups port-props presets resize-port schemas state time ui units uri-map \
    urid worker; do
    own+=(/usr/lib/lv2/$name.lv2/*.ttl)
done
sord_validate "${own[@]}" "$bundle"/*.ttl | tee /dev/stderr | grep -q "^Found 0 errors"

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/lv2"
ln -s "$bundle" "$folder/lv2/zephyra.lv2"
export LV2_PATH=$folder/lv2:/usr/lib/lv2
for plugin in urn:zephyra:effect urn:zephyra:instrument; do
    lv2ls | grep -qx "$plugin"
    LC_ALL=C lv2info "$plugin" >"$folder/info" 2>"$folder/complaints"
    [[ ! -s $folder/complaints ]] || { cat "$folder/complaints"; exit 1; }
    [[ $(grep -c "Symbol:" "$folder/info") -ge 29 && $(grep -c "(Pulse Garden)" "$folder/info") == 12 ]]
done
# The plug-ins' library shows its entry and what the window's beside it works with, that one its entry.
[[ $(nm -D --defined-only "$bundle/zephyra.so" | awk '$3 !~ /^_Z(T[VIS]|Thn[0-9]+_)?NK?7zephyra/ { print $3 }') == lv2_descriptor ]]
if [[ -e $bundle/zephyra_window.so ]]; then
    [[ $(nm -D --defined-only "$bundle/zephyra_window.so" | awk '{ print $3 }') == lv2ui_descriptor ]]
    grep -q "urn:zephyra:window" "$folder/info"
fi
