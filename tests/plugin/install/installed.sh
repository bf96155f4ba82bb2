#!/usr/bin/env bash
# Installs what is built into a folder and packages it, and looks whether all of it is there and works.
# Usage: installed.sh TREE BUILD juce|plain
set -euo pipefail
tree=$1 build=$2 kind=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
usr=$scratch/usr
export ZEPHYRA_SHARED_FOLDER=$scratch/shared HOME=$scratch/home XDG_DATA_DIRS=$usr/share LC_ALL=C.UTF-8
unset ZEPHYRA_RESOURCE_FOLDER ZEPHYRA_MODULES
failed=0

fail() {
    printf '%s\n' "$@"
    failed=1
}

has() { command -v "$1" >/dev/null || { echo "not checked, for want of $1"; false; }; }

# same WHAT EXPECTED FOUND
same() { [[ $2 == "$3" ]] || fail "$1: < is expected, > is found" "$(diff <(echo "$2") <(echo "$3"))"; }

name() { sed -n "s/^$1: //p" "$tree/tests/saved_files/names.txt"; }

# What the tree below a folder should hold: what needs JUCE is marked, presets are counted.
listed() {
    sed -e "s/@DESKTOP@/$(name desktop)/" "$tree/tests/plugin/install/installed_files.txt" |
        if [[ $kind == juce ]]; then sed 's/^juce //'; else grep -v '^juce '; fi | sort
}
found() { sed -e '/\/\(effect\|instrument\)_[^/]*\.ttl$/d' | sort; }

cmake --install "$build" --prefix "$usr" >"$scratch/log"
same "installed files" "$(listed)" "$(cd "$usr" && find . -type f | sed 's/^..//' | found)"
same "presets in LV2" 96 "$(find "$usr/lib/lv2" -name "*_*.ttl" | wc -l)"

PATH=$usr/bin:$PATH
same "resources" "$usr/share/zephyra/resources" \
    "$(zephyra where | sed -n 's/^resources *\(.*[^ ]\)  default$/\1/p')"
same "banks" 4 "$(zephyra banks | wc -l)"
zephyra "$usr/share/zephyra/resources/Blackbird.mp3" --seconds 0.2 -o "$scratch/out.m4a" --quiet

# Completion of words as bash hands them over, of which the last is the one being typed.
completed() {
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
    _zephyra
    (IFS='|' && echo "${COMPREPLY[*]}")
}
source "$usr/share/bash-completion/completions/zephyra"
cd "$scratch" # which has no files of these names
while IFS='>' read -r typed offered; do
    eval "words=($typed)"
    same "completing $typed" "$offered" "$(completed "${words[@]}")"
done <<'END'
zephyra ban>banks
zephyra preset "">show|export|import|rename|delete|copy|move
zephyra --shared-folder /tmp preset sh>show
zephyra help Rnd>RndDensity|RndLength|RndPitch
zephyra bird.wav --set rndp>RndPitch=
zephyra bird.wav --lfo = Scann>Scanning:
zephyra render --envelope = Pulse>Pulse\ 1|Pulse\ 2
zephyra bird.wav --transport "">play|stop
zephyra bird.wav --type fl>flac
zephyra samples import --as in>
zephyra bird.wav --bank 'Glass\ Weather' --preset Mel>Meltwater
zephyra --preset '"Night'>Night Owl
zephyra preset copy 'Bird\ Machines' 'Night\ Owl' Gl>Glass\ Weather
zephyra preset show 'Bird\ Machines' --js>--json
END
if has zsh; then zsh -n "$usr/share/zsh/site-functions/_zephyra" || fail "zsh's completion"; fi
if has fish; then
    same "fish" "Bird Machines" "$(fish --no-config -c "source '$usr/share/fish/vendor_completions.d/zephyra.fish'
        complete -C 'zephyra preset show Bird\\ M'" | cut -f1)"
fi
if has groff; then
    for page in "$usr"/share/man/man1/*.1; do
        said=$(groff -man -ww -z "$page" 2>&1)
        same "$page" "" "$said"
    done
fi
for word in "zephyra preset rename" "BANK [PRESET] NEW" "Ring Modulation Amount"; do
    grep -qF "$word" "$usr/share/man/man1/zephyra.1" || fail "the manual page does not say $word"
done

if has lv2ls; then
    same "LV2 plug-ins" "$(name lv2)" "$(LV2_PATH=$usr/lib/lv2 lv2ls | sort)"
fi
if [[ $kind == juce ]]; then
    same "VST3 bundles" "$(name plug-in | sed 's/$/.vst3/' | sort)" "$(ls "$usr/lib/vst3" | sort)"
    shared=$usr/share desktop=$(name desktop)
    if has desktop-file-validate; then
        same "desktop entry" "" "$(desktop-file-validate "$shared/applications/$desktop.desktop" 2>&1)"
    fi
    if has appstreamcli; then
        appstreamcli validate --no-net "$shared/metainfo/$desktop.metainfo.xml" >"$scratch/log" || fail "$(<"$scratch/log")"
    fi
    program=$(sed -n 's/^Exec=\([^ ]*\).*/\1/p' "$shared/applications/$desktop.desktop")
    [[ -x $usr/bin/$program ]] || fail "the desktop entry starts $program, which is not installed"
fi

if has dpkg-deb && has dpkg-shlibdeps; then
    cpack -G DEB -B "$scratch/package" -D CPACK_DEBIAN_COMPRESSION_TYPE=gzip \
        --config "$build/CPackConfig.cmake" >"$scratch/log" 2>&1 || fail "$(<"$scratch/log")"
    package=$(echo "$scratch"/package/*.deb)
    dpkg-deb -R "$package" "$scratch/unpacked"
    same "package" "$(name package)" "$(dpkg-deb -f "$package" Package)"
    same "version" "$(sed -n '1s/.*(\(.*\)).*/\1/p' "$tree/packaging/changelog")" "$(dpkg-deb -f "$package" Version)"
    same "control files" "control md5sums" "$(ls "$scratch/unpacked/DEBIAN" | xargs)"
    [[ $(dpkg-deb -f "$package" Depends) == *fonts-dejavu-core*libavformat* ]] || fail "dependencies are missing"
    same "packaged files" \
        "$({ listed | sed -e 's/site-functions/vendor-completions/; s/\(man1.*\)/\1.gz/'
             echo share/doc/zephyra/changelog.gz; echo share/doc/zephyra/copyright; } | sort)" \
        "$(cd "$scratch/unpacked/usr" && find . -type f | sed 's/^..//' | found)"
    if has lintian; then
        same "lintian" "" "$(lintian --fail-on error,warning "$package" 2>/dev/null)"
    fi
fi
exit "$failed"
