#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# wine.sh <program.exe> [argument...]: runs a program for Windows under Wine, in a Windows of the
# build tree's own. `wine.sh --end` ends whatever still runs in it.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export WINEPREFIX=${QUILLON_WINEPREFIX:-$here/build/wine}
# Neither its log nor its offers to install more.
export WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES='mscoree,mshtml='

wine=$(command -v wine64 || echo /usr/lib/wine/wine64)
[[ -x $wine ]] || {
  echo "wine.sh: there is no wine64 here" >&2
  exit 127
}
if [[ ${1:-} == --end ]]; then
  # Nothing runs: then it fails.
  "${wine/wine64/wineserver64}" -k || true
  exit
fi
mkdir -p "$WINEPREFIX"
# The first start makes the Windows; the tests that start beside it wait.
if [[ ! -f $WINEPREFIX/.made ]]; then
  exec 9>"$WINEPREFIX/.lock"
  flock 9
  if [[ ! -f $WINEPREFIX/.made ]]; then
    DISPLAY='' "$wine" wineboot -i >/dev/null 2>&1 9>&-
    touch "$WINEPREFIX/.made"
  fi
  exec 9>&-
fi
exec "$wine" "$@"
