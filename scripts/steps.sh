# What ./run, ./test and ./format share: packages, and building a preset.
# To be sourced; needs $root, the folder of the repository.
# shellcheck shell=bash disable=SC2034,SC2154

export LC_ALL=C.UTF-8

build_packages=(
    build-essential cmake ninja-build pkg-config
    libsndfile1-dev libebur128-dev libexpat1-dev libutf8proc-dev libxxhash-dev
    libavformat-dev libavcodec-dev libavutil-dev libswresample-dev
    nlohmann-json3-dev libcli11-dev libcairo2-dev libfftw3-dev
    fontconfig fonts-dejavu-core
)
# Plug-ins and the standalone program, besides.
plugin_packages=(
    juce-modules-source juce-tools lv2-dev libjack-jackd2-dev libasound2-dev
    libx11-dev libxext-dev libxinerama-dev libxrandr-dev libxcursor-dev libxrender-dev
    libxi-dev
    libfreetype-dev libfontconfig-dev libpng-dev libjpeg-dev zlib1g-dev
)
format_packages=(clang-format)
test_packages=(
    clang-22 libclang-rt-22-dev llvm-22 valgrind
    libgtest-dev libgmock-dev libbenchmark-dev lv2-dev
    sox libsox-fmt-all ffmpeg sndfile-programs
)
# What plays the plug-ins and the standalone program. The optional ones are large: without them
# their tests say so and are skipped.
host_packages=(liblilv-dev lilv-utils sordi jalv jackd2 xvfb desktop-file-utils lintian)
optional_packages=(ardour xserver-xorg-core xserver-xorg-video-dummy)

say() { printf '%s\n' "$*" >&2; }

die() {
    say "$*"
    exit 1
}

isDebian() { command -v dpkg-query >/dev/null; }

isInstalled() { [[ $(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]; }

# installPackages NAME...: installs those that are missing, and says which.
installPackages() {
    if ! isDebian; then
        say "This is no Debian system; these packages, or their like, must be installed: $*"
        return
    fi
    local name missing=() as_root=()
    for name in "$@"; do
        [[ " ${missing[*]} " == *" $name "* ]] || isInstalled "$name" || missing+=("$name")
    done
    ((${#missing[@]})) || return 0
    if ((EUID)); then
        command -v sudo >/dev/null ||
            die "As root, install these packages and try again: apt-get install ${missing[*]}"
        as_root=(sudo)
    fi
    as_root+=(env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300)
    say "Installing packages, which may take some minutes: ${missing[*]}"
    local log
    log=$(mktemp)
    if ! { "${as_root[@]}" update && "${as_root[@]}" install --no-install-recommends -y "${missing[@]}"; } \
        </dev/null >"$log" 2>&1; then
        tail -n 20 "$log" >&2
        rm -f "$log"
        die "The packages above could not be installed; the lines before this one say why."
    fi
    rm -f "$log"
}

# installOptional NAME...: tries to, one by one; what cannot be had is named and left out.
installOptional() {
    isDebian || return 0
    local name
    for name in "$@"; do
        isInstalled "$name" && continue
        say "Installing $name, which may take some minutes"
        (installPackages "$name") 2>/dev/null ||
            say "Going on without $name, whose tests will be skipped; apt-get install $name says why"
    done
}

# configure PRESET [OPTION...]: makes the build folder when it is not there yet.
configure() {
    local preset=$1
    shift
    (cd "$root" && cmake --preset "$preset" "$@")
}

# logged TITLE LOG COMMAND...: runs the command with all its output in LOG. On a terminal a bar shows
# how far ninja or ctest is, as they say it themselves; more than a handful of steps are worth one.
logged() {
    local title=$1 log=$2 line status=0
    shift 2
    if [[ ! -t 2 ]]; then
        "$@" </dev/null >"$log" 2>&1 || status=$?
        return "$status"
    fi
    { "$@" </dev/null 2>&1 || status=$?; echo "exit status $status"; } | {
        while IFS= read -r line; do
            if [[ $line =~ ^exit\ status\ ([0-9]+)$ ]]; then
                status=${BASH_REMATCH[1]}
                continue
            fi
            printf '%s\n' "$line" >&3
            [[ $line =~ ^\ *\[?([0-9]+)/([0-9]+)(\]|\ Test) ]] || continue
            ((BASH_REMATCH[2] > 8)) && drawBar "$title" "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}"
        done
        printf '\r\033[K' >&2
        exit "$status"
    } 3>"$log"
}

# drawBar TITLE DONE ALL: one line on standard error, over the one before.
drawBar() {
    local width=30 filled bar
    filled=$((width * $2 / $3))
    printf -v bar '%*s' "$filled" ''
    printf '\r\033[K%s  [%-*s] %d of %d' "$1" "$width" "${bar// /=}" "$2" "$3" >&2
}

# compile PRESET TARGET...: builds; ninja itself knows what is up to date.
compile() {
    local preset=$1
    shift
    cmake --build "$root/build/$preset" --parallel "$(nproc)" --target "$@"
}
