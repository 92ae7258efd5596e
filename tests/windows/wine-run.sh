#!/usr/bin/env bash
# Runs a Windows program under wine64 with a wine prefix of its own inside the build folder (made on the
# first run, which takes a while), without wine's debug output. Usage: wine-run.sh PROGRAM.exe [ARGS...]
set -euo pipefail
build="${TOLVANE_WINE_BUILD:-$PWD}"
export WINEPREFIX="${WINEPREFIX:-$build/wine/prefix}"
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="
wine=$(command -v wine64 || true)
[ -n "$wine" ] || wine=/usr/lib/wine/wine64
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  mkdir -p "$WINEPREFIX"
  "$wine" wineboot -i >/dev/null 2>&1 || true
fi
exec "$wine" "$@"
