#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# windows_hid_test.sh <folder of programs> <folder of programs for Windows> [option...]: runs the
# conformance test of kvusb-hid.dll, with these options, under Wine, whose HID driver sees the simulated
# boards of an emulated kernel. Exits with its status. ./dev windows-hid-test builds what it needs.
#
# Boards leave only on demand (--restart --vanish 1010:22): Wine 8 does not always let go of one that
# has left.
set -euo pipefail
self=$(realpath "${BASH_SOURCE[0]}")
programs=$(realpath "$1") windows=$(realpath "$2")
shift 2
cd "$(dirname "$self")/.."

kFindLimit=120 # seconds, until Wine has found all boards
kRunLimit=400  # seconds, for the conformance test

# A Windows of its own: what serves it has to be started where the boards are.
export QUILLON_WINEPREFIX=$PWD/build/wine-hid
wine=scripts/wine.sh

die() {
  echo "windows-hid-test: $*" >&2
  exit 1
}

# By SDL, which Wine prefers, it would find no boards.
without_sdl() {
  "$wine" reg add 'HKLM\System\CurrentControlSet\Services\winebus' \
    /v 'Enable SDL' /t REG_DWORD /d 0 /f >/dev/null
  "$wine" --end
}

# How many of our boards' interfaces Wine has made ready.
found() {
  local class='{4d1e55b2-f16f-11cf-88cb-001111000030}'
  "$wine" reg query "HKLM\\System\\CurrentControlSet\\Control\\DeviceClasses\\$class" \
    /s /v Linked 2>/dev/null | tr -d '\r' |
    awk '/^HKEY/ { ours = toupper($0) ~ /VID_4C7E/ } ours && $NF == "0x1" { ++n } END { print n + 0 }'
}

# Wine's drivers find the boards one after the other, and end soon after the last program does, which
# spoils what they were installing: so a program that waits for a key keeps them, and a Windows that
# did not get that far is not used again.
await_boards() {
  local nodes=(/sys/class/hidraw/*) end=$((SECONDS + kFindLimit))
  coproc "$wine" cmd /c pause >/dev/null
  until [[ $(found) -eq ${#nodes[@]} ]]; do
    if [[ $SECONDS -ge $end ]]; then
      "$wine" --end
      rm -rf "$QUILLON_WINEPREFIX"
      die "Wine does not find all of the ${#nodes[@]} interfaces"
    fi
    sleep 1
  done
}

if [[ ${1:-} == --among-boards ]]; then
  shift
  status=0
  await_boards
  timeout "$kRunLimit" "$wine" "$windows/kvusb-conformance.exe" "$@" hid || status=$?
  "$wine" --end
  exit "$status"
fi

without_sdl
umockdev-wrapper "$programs/quillon-emulated-boards" --one-by-one --away 1000 \
  tests/lab/conformance/rig.json \
  "$self" "$programs" "$windows" --among-boards "$@"
