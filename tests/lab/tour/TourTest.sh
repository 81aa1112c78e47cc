#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# TourTest.sh <quillon-tour>: the tour comes to its end and shows every step; and on boards that do
# not do their part it fails, says where, and stops there.
set -euo pipefail
tour=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=$folder
unset QUILLON_SIM_RIG QUILLON_SIM_LATENCY_US
failures=0

fail() {
  echo "FAILED: $*"
  failures=$((failures + 1))
}

# says <run> <text>...: the run's transcript holds each text.
says() {
  local run=$1 text
  shift
  for text in "$@"; do
    grep -qF -- "$text" "$folder/$run/transcript.txt" || fail "$run: the transcript lacks \"$text\""
  done
}

# breaks <run> <faults>: a tour fails whose joystick controller 002 has these faults.
breaks() {
  local run=$1
  cat >"$folder/$run.json" <<RIG
{"boards": [
  {"id": "first", "product": "0x0910", "serial": "001", "firmware": "2.82"},
  {"id": "second", "product": "0x0910", "serial": "002", "firmware": "2.83", "faults": [$2]}
]}
RIG
  if QUILLON_SIM_RIG=$folder/$run.json "$tour" "$folder/$run" >"$folder/$run.log" 2>&1; then
    fail "$run: the tour claims success"
  fi
}

"$tour" "$folder/whole" >"$folder/whole.log" 2>&1 || {
  fail "the tour ended with status $?:"
  cat "$folder/whole.log" "$folder/whole/transcript.txt"
}
says whole 'Boards in the tree: 14' '. Choose the joystick controller' \
  '. Open "Analog Channels"' '. Retrieve the settings' '. Edit cells' \
  'Clicked Analog 1, Invert: on, was off' 'Clicked Analog 5, S2: on, was off' \
  'Picked from the list of Analog 1, Resolution: "10 Bits", was "12 Bits"' '. Update the board' \
  '. Close the window' '. Start Quillon anew' 'Seen: the same values came back' \
  'default settings for this page?' 'A menu "Device Tools":' 'default settings for this item?' \
  'Seen: the board holds the defaults' 'Incompatible device version detected!' \
  'WARNING: Firmware update required!' 'Lamps: Busy dark, Error dark' \
  'The tour saw everything that it should see.'
! grep -q 'FAILED' "$folder/whole/transcript.txt" || fail 'the transcript tells of a failure'

# Every picture that the transcript names is there, and pictures of different states differ.
while read -r picture; do
  [[ $(head -c 4 "$folder/whole/$picture" | tail -c 3) == PNG ]] || fail "$picture is no picture"
done < <(sed -n 's/^   Picture: //p' "$folder/whole/transcript.txt")
cmp -s "$folder"/whole/*-retrieved.png "$folder"/whole/*-edited.png &&
  fail 'the edits do not show in the pictures'
cmp -s "$folder"/whole/*-updated.png "$folder"/whole/*-retrieved.png &&
  fail 'the update does not show in the pictures'

breaks unreadable '{"kind": "read_fails", "command": "0x11", "times": 0}'
says unreadable '. Retrieve the settings' 'Error blinking' 'FAILED: This is not so: no error.'
breaks unwritable '{"kind": "write_fails", "command": "0x16", "times": 0}'
says unwritable '. Update the board' 'Error blinking' 'FAILED: This is not so: no error.'
# Says that it has stored the analog inputs, and has not.
breaks forgetful '{"kind": "status", "command": "0x0D", "value": 13, "times": 0}'
says forgetful '. Retrieve again' 'FAILED: This is not so: the same values came back'

exit $((failures > 0))
