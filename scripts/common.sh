# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
#
# Sourced by the other scripts: installs what is missing, configures and builds.

set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

# Lets ccache store precompiled headers, too.
export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS:-pch_defines,time_macros}

say() { printf '\n== %s\n' "$*"; }

# needs STEPS MEGABYTES TIME: prints what a script will need, and warns if there is less disk space.
# What an earlier run has built does not count.
needs() {
    steps=$1
    current=0
    local free built
    free=$(($(df -Pk "$root" | awk 'NR == 2 { print $4 }') / 1024))
    built=$(du -sm "$root/build/dev" 2>/dev/null | cut -f1 || true)
    printf 'This takes up to %s MB of disk (free: %s MB, in use already: %s MB) and about %s.\n' \
        "$2" "$free" "${built:-0}" "$3"
    [ $((free + ${built:-0})) -ge "$2" ] || printf 'The disk may be too small.\n' >&2
}

# step WHAT: prints the number of the step that begins.
step() {
    current=$((current + 1))
    say "Step $current of $steps: $*"
}

# The major version of Qt to use.
qt=5

# The packages in the given sections of scripts/packages, including those for the Qt in use, one per
# line.
packages_of() {
    awk -v wanted=" $* " -v qt="-qt$qt\$" '
        /^\[/ { section = substr($0, 2, index($0, "]") - 2); sub(qt, "", section); next }
        /^#/ || NF == 0 { next }
        index(wanted, " " section " ") { print $1 }' "$root/scripts/packages" | sort -u
}

# install_packages SECTION...: installs the missing packages of the sections.
install_packages() {
    if [ "$(uname)" = Darwin ]; then
        # Homebrew keeps Qt 5 out of the default search path.
        if command -v brew >/dev/null && brew --prefix qt@5 >/dev/null 2>&1; then
            CMAKE_PREFIX_PATH=$(brew --prefix qt@5)${CMAKE_PREFIX_PATH:+:$CMAKE_PREFIX_PATH}
            export CMAKE_PREFIX_PATH
        fi
        return
    fi
    if ! command -v apt-get >/dev/null; then
        echo "This is no Debian: please see to it that these are installed:" \
            $(packages_of "$@") >&2
        return
    fi
    local name missing=()
    for name in $(packages_of "$@"); do
        dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null | grep -qx installed ||
            missing+=("$name")
    done
    [ ${#missing[@]} -eq 0 ] && return
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    say "Installing ${missing[*]}"
    "${as_root[@]}" apt-get update -q
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -q -y --no-install-recommends "${missing[@]}"
}

# install_web_checkers: installs page checkers, which Debian does not package, to build/web if there
# is npm. Otherwise the tests that need them are skipped with a message.
install_web_checkers() {
    [ ! -e "$root/build/web/node_modules/axe-core" ] && command -v npm >/dev/null || return 0
    mkdir -p "$root/build/web"
    npm install --prefix "$root/build/web" --no-save --no-audit --no-fund --ignore-scripts \
        html-validate@9.0.0 axe-core@4.14.1 ||
        echo "The checkers of pages cannot be installed: their tests are skipped." >&2
}

# configure PRESET [cmake options]: configures one of CMakePresets.json.
configure() {
    local preset=$1
    shift
    say "Configuring ($preset)"
    cmake --preset "$preset" "$@" >"$root/.configure.log" 2>&1 || {
        cat "$root/.configure.log"
        return 1
    }
    rm -f "$root/.configure.log"
}

# build PRESET [TARGET...]: builds everything, or the targets.
build() {
    local preset=$1
    shift
    say "Building ($preset)"
    if [ $# -eq 0 ]; then
        cmake --build --preset "$preset"
    else
        cmake --build --preset "$preset" --target "$@"
    fi
}

# use_qt MAJOR: sets the version of Qt that was asked for.
use_qt() {
    case $1 in
    5 | 6) qt=$1 ;;
    *)
        echo "There is Qt 5, and Qt 6." >&2
        exit 2
        ;;
    esac
}

# preset NAME: the preset for the Qt in use.
preset() {
    [ "$qt" = 5 ] && echo "$1" || echo "$1-qt$qt"
}

# build_to_package [cmake options]: builds the library in build/package, or build/package-qt6, as it
# is packaged: with Debian's hardening flags and the date of the last commit.
build_to_package() {
    SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null || date +%s)
    export SOURCE_DATE_EPOCH
    configure "$(preset package)" "$@" \
        "-DCMAKE_CXX_FLAGS=$(dpkg-buildflags --get CPPFLAGS) $(dpkg-buildflags --get CXXFLAGS)" \
        "-DCMAKE_SHARED_LINKER_FLAGS=$(dpkg-buildflags --get LDFLAGS) -Wl,-z,now"
    build "$(preset package)"
}

# figure WHAT VALUE: prints a measured figure, and stores it for scripts/trust on request.
figure() {
    printf '%s: %s\n' "$1" "$2"
    [ -z "${TRUST_FIGURES:-}" ] || printf '%s: %s\n' "$1" "$2" >>"$TRUST_FIGURES"
}
