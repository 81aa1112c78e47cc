#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Unpacks the archive for Windows into a folder whose name has blanks and letters beyond ASCII, and
# starts what is in it under Wine, with nothing else within reach. Needs a display, and the build's
# own smoke-test.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
archives=(build/package/quillon-*-windows-x64.zip)
[[ ${#archives[@]} -eq 1 && -f ${archives[0]} ]] || {
  echo "There is not one archive in build/package, but: ${archives[*]}" >&2
  exit 1
}
name=$(basename "${archives[0]}" .zip)
place="$PWD/build/package/Prüfung mit Leerzeichen żółć"
root=$PWD
wine=$root/scripts/wine.sh
smoke=$root/build/windows/bin/smoke-test.exe
failed=0

# check <what it says> <command...>
check() {
  local claim=$1
  shift
  if "$@"; then
    echo "ok: $claim"
  else
    echo "FAILED: $claim"
    failed=1
  fi
}

rm -rf "$place"
mkdir -p "$place"
(cd "$place" && cmake -E tar xf "../$name.zip")
cd "$place/$name"

# What a file loads is beside the programs or part of every Windows.
loads_nothing_else() {
  local file library
  find . -iname '*.exe' -o -iname '*.dll' | while read -r file; do
    x86_64-w64-mingw32-objdump -p "$file" | sed -n 's/^\tDLL Name: //p' | while read -r library; do
      [[ -f ./$library || -f $(system32)/${library,,} ]] || echo "$file loads $library"
    done
  done | { ! grep .; }
}
system32() {
  echo "${QUILLON_WINEPREFIX:-$root/build/wine}/drive_c/windows/system32"
}
check 'nothing is loaded that is not there' loads_nothing_else

for file in firmware/*.kvx; do
  check "kvx finds $file sound" "$wine" kvx.exe check "$file" >/dev/null
done
check 'the simulated boards keep the promises of a HID library' \
  env QUILLON_SIM_RIG=boards.json "$wine" kvusb-conformance.exe sim >/dev/null

# From an empty folder, because what lies in the current one is found too.
mkdir ../empty
cd ../empty
check 'the program starts, refuses to start twice, and ends' \
  env QUILLON_PROGRAM="Z:$place/$name/quillon.exe" QUILLON_KVUSB=sim \
  QUILLON_UPDATE_BASE=http://127.0.0.1:1/ "$wine" "$smoke"
exit "$failed"
