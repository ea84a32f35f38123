# Sourced by every script: where things are, and how a fresh Debian 12 machine gets what a script needs.
# shellcheck shell=bash disable=SC2034  # the variables are for the scripts that source this file

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
localeFolder=$root/build/locales
# Debian's own tools, even where others come first on PATH.
python=/usr/bin/python3
clangFormat=/usr/bin/clang-format
clangTidy=/usr/bin/clang-tidy
runClangTidy=/usr/bin/run-clang-tidy

nativePackages=(cmake ninja-build g++ nlohmann-json3-dev libcli11-dev pkg-config libnl-3-dev libnl-genl-3-dev libpci-dev
    libiscsi-dev)
unitTestPackages=(libgmock-dev)
windowsPackages=(cmake ninja-build nlohmann-json3-dev libcli11-dev g++-mingw-w64-x86-64-posix)
packingPackages=(dpkg-dev file zip)
formatPackages=(clang-format)
manualPackages=(pandoc)
testPackages=("${nativePackages[@]}" "${unitTestPackages[@]}" "${windowsPackages[@]}"
    "${packingPackages[@]}" "${formatPackages[@]}" "${manualPackages[@]}" mandoc clang clang-tidy libclang-rt-14-dev
    ansible-core ethtool git hunspell hunspell-en-us iproute2 libbenchmark-dev libpugixml-dev lintian lld locales openssh-server
    pycodestyle pylint python3 python3-clang-14 python3-jsonpatch python3-jsonschema python3-pexpect python3-pytest python3-pytest-xdist python3-pyte
    python3-yaml strace tgt wine wine64 yamllint zsh)

say() { printf '%s\n' "$*" >&2; }

die() {
    say "error: $*"
    exit 1
}

# Installs those of the given packages that are missing, as root or through sudo.
needPackages() {
    local installed missing package
    command -v dpkg-query >/dev/null || die "this is not a Debian system; install: $*"
    installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null || true)
    missing=()
    for package in "$@"; do
        grep -qxF "installed $package" <<<"$installed" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    local asRoot=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || die "these Debian packages are missing, and only root or sudo" \
            "can install them: ${missing[*]}"
        asRoot=(sudo)
    fi
    say "Installing Debian packages: ${missing[*]}"
    "${asRoot[@]}" apt-get update -q >&2
    "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -q --no-install-recommends "${missing[@]}" >&2
}

# Configures and builds one preset, or those of its targets that are named. Another script that builds in the same folder waits for this one. What
# "native-tests" builds is added to the folder of "native", whose own targets stay the program and the simulator.
buildPreset() {
    local folder=$root/build/${1%-tests}
    mkdir -p "$folder"
    (
        cd "$root" && flock 9 && configurePreset "$1" "$folder" &&
            cmake --build --preset "$1" --parallel "$(nproc)" ${2+--target "${@:2}"}
    ) 9>"$folder.lock"
}

# Configures a preset in its folder, where that has not been done.
configurePreset() {
    local configured=$2/configured-$1
    [ ! -e "$configured" ] || [ CMakePresets.json -nt "$configured" ] || return 0
    configureAnew "$1" && touch "$configured"
}

# The compiler is the preset's, or Debian's g++, whatever the environment names.
configureAnew() { env -u CC -u CXX -u CFLAGS -u CXXFLAGS -u LDFLAGS cmake --preset "$1"; }

# The same without a word on standard output: what the build says is shown only when it fails.
buildPresetQuietly() {
    local log=$root/build/$1.log
    mkdir -p "$root/build"
    [ -e "$root/build/$1/bin/tavrocli" ] || say "Building tavrocli; this is done once and takes a minute ..."
    if ! buildPreset "$1" >"$log" 2>&1; then
        cat "$log" >&2
        die "the build failed"
    fi
}

# Compiles the named UTF-8 locale ("ja_JP.UTF-8") into build/locales, without a change to the system.
compileLocale() {
    [ -e "$localeFolder/$1/LC_CTYPE" ] && return
    mkdir -p "$localeFolder"
    # Compiled beside its place and then moved, so that nobody meets half a locale.
    local scratch
    scratch=$(mktemp -d "$localeFolder/.new.XXXXXX")
    localedef -i "${1%%.*}" -f UTF-8 "$scratch/$1"
    mv -T "$scratch/$1" "$localeFolder/$1" 2>/dev/null || [ -e "$localeFolder/$1/LC_CTYPE" ]
    rm -rf "$scratch"
}

# Creates the private Windows of the tests where there is none, and keeps its server alive for a minute
# after the last program, so that a row of runs does not start it anew each time.
startWine() {
    mkdir -p "$root/build"
    (
        flock 9
        if [ ! -e "$root/build/wine/ready" ]; then
            say "Setting up Wine in build/wine ..."
            runWineQuietly wineboot -i
            runWineQuietly --server -w
            touch "$root/build/wine/ready"
        fi
        runWineQuietly --server -p60 || true
        # The first program starts the services; with this one they hold nobody's pipe.
        runWineQuietly cmd.exe /c exit
    ) 9>"$root/build/wine.lock"
}

runWineQuietly() { "$root/scripts/lib/wine" "$@" </dev/null >/dev/null 2>&1 9>&-; }
