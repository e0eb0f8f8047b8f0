#!/bin/sh
# Runs a Windows program under Wine: tests/support/wine.sh PROGRAM.exe ARGUMENTS
#
# The prefix (what Wine takes for drive C: and the registry) is build/wine, made on first use; a caller may
# name another one in WINEPREFIX. No display is needed: message boxes return at once without one.
# Exit code 125: there is no Wine here, or none that runs this kind of program.
set -eu

root=$(cd "$(dirname "$0")/../.." && pwd)
export WINEPREFIX="${WINEPREFIX:-$root/build/wine}"
export WINEDEBUG="${WINEDEBUG:--all}"
# Neither .NET nor the HTML engine is wanted; without this Wine offers to install them.
export WINEDLLOVERRIDES="mscoree=;mshtml="
unset DISPLAY WAYLAND_DISPLAY

command -v wine > /dev/null || { echo "wine.sh: Wine is not installed" >&2; exit 125; }
[ $# -gt 0 ] || { echo "usage: wine.sh PROGRAM ARGUMENTS" >&2; exit 2; }

# Two callers at once make one prefix.
mkdir -p "$WINEPREFIX"
exec 9> "$WINEPREFIX/.lock"
flock 9
if [ ! -e "$WINEPREFIX/.ready" ]; then
    wineboot -i > "$WINEPREFIX/setup.log" 2>&1 9>&- < /dev/null && wineserver -w 9>&- &&
        touch "$WINEPREFIX/.ready" ||
        { echo "wine.sh: the prefix cannot be made, see $WINEPREFIX/setup.log" >&2; exit 125; }
fi
exec 9>&-

# 0x014c in the PE header says 32-bit; the 64-bit Wine alone cannot run that.
machine() {
    offset=$(od -An -tu4 -j60 -N4 "$1" | tr -d ' ')
    od -An -tx2 -j$((offset + 4)) -N2 "$1" | tr -d ' '
}
if [ -f "$1" ] && [ "$(machine "$1")" = 014c ] && [ ! -e "$WINEPREFIX/drive_c/windows/syswow64/kernel32.dll" ]; then
    echo "wine.sh: no Wine for 32-bit programs" >&2
    exit 125
fi

exec wine "$@"
