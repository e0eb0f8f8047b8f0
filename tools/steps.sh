# Shared by ./test, ./demo and ./package: install what is missing, build, report failures. They source it with $root set
# to the project's folder.

logs=$root/build/logs
mkdir -p "$logs"
export LC_ALL=C.UTF-8

# Keeps the user's own files untouched: programs' settings and, if the home folder is not writable, everything
# that tools keep there.
[ -n "${HOME:-}" ] && [ -w "$HOME" ] || { export HOME=$root/build/home; mkdir -p "$HOME"; }
export XDG_CONFIG_HOME=$root/build/config

native_packages="g++ cmake ninja-build libexpat1-dev libcurl4-openssl-dev libssl-dev libmicrohttpd-dev
libcli11-dev nlohmann-json3-dev help2man"
native_test_packages="libgtest-dev libgmock-dev jing curl pkg-config"
report_test_packages="chromium nodejs npm" # without them the report is not looked at
python_test_packages="gcc binutils python3 python3-venv python3-pytest mypy"
windows_packages="g++-mingw-w64-x86-64-posix mingw-w64-tools wine wine64
libcli11-dev nlohmann-json3-dev"
windows_test_packages="g++-mingw-w64-i686-posix googletest"
package_packages="binutils dpkg-dev file gzip python3"
package_test_packages="bash-completion lintian man-db pkg-config unzip"
lint_packages="clang-format clang-tidy"

# Says in one line what went wrong; if there is a log, shows its end.
complain() { # MESSAGE [LOG]
    echo "$1${2:+: see ${2#"$root"/}}"
    [ -z "${2:-}" ] || { grep -aE 'error|FAILED' "$2" || tail -n 15 "$2"; } 2> /dev/null | head -n 15 | sed 's/^/    /'
}

# Installs missing packages; false if one fails.
install_missing() { # PACKAGE...
    local missing=() package
    for package; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2> /dev/null)" = installed ] || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if ! command -v apt-get > /dev/null || [ "$(id -u)" != 0 ]; then
        complain "could not install ${missing[*]}: that takes root and apt-get"
        return 1
    fi
    echo "installing ${missing[*]}"
    local log=$logs/install.log
    export DEBIAN_FRONTEND=noninteractive
    # A failed update may not matter: an earlier one may know the packages.
    apt-get update > "$log" 2>&1 < /dev/null
    apt-get install -y --no-install-recommends "${missing[@]}" >> "$log" 2>&1 < /dev/null && return 0
    complain "could not install ${missing[*]}" "$log"
    return 1
}

# Uses an existing build folder; on a fresh machine, compiling many sources at a time takes half as long.
preset_at_hand() { # PRESET
    [ -e "$root/build/$1/CMakeCache.txt" ] && echo "$1" || echo "$1-quick"
}

# Configures a preset if that is new or outdated; false if it fails.
configure() { # PRESET
    local log=$logs/$1-build.log stamp=$root/build/$1/.configured
    [ "$root/CMakePresets.json" -nt "$stamp" ] || return 0
    (cd "$root" && cmake --preset "$1") > "$log" 2>&1 < /dev/null && touch "$stamp" && return 0
    complain "$1 build cannot be configured" "$log"
    return 1
}

# Builds a preset, all of it or some targets; false if it fails.
build() { # PRESET [TARGET...]
    local preset=$1 log=$logs/$1-build.log
    shift
    echo "building: $preset"
    configure "$preset" || return 1
    (cd "$root" && cmake --build --preset "$preset" ${1:+--target "$@"}) > "$log" 2>&1 < /dev/null && return 0
    complain "$preset build failed" "$log"
    return 1
}

# Ends what Wine left running in the project's prefix.
stop_wine() {
    [ ! -d "$root/build/wine" ] || ! command -v wineserver > /dev/null ||
        WINEPREFIX=$root/build/wine WINEDEBUG=-all wineserver -k > /dev/null 2>&1
}
