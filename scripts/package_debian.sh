#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Makes Debian's packages of the release build and of the manual, in build/package. `./dev package`
# builds both first. The same sources give the same bytes.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
folder=build/package

mkdir -p "$folder"
rm -f "$folder"/*.deb
# The time of every file in a package, so that it does not tell when it was made.
SOURCE_DATE_EPOCH=$(dpkg-parsechangelog --file packaging/debian/changelog --show-field Timestamp)
export SOURCE_DATE_EPOCH
umask 022 # folders in a package get their rights from it
cpack --config build/release/CPackConfig.cmake -B "$folder" &>"$folder/cpack.log" || {
  cat "$folder/cpack.log" >&2
  exit 1
}
rm -rf "$folder/_CPack_Packages"
for package in "$folder"/*.deb; do
  echo "$PWD/$package: $(stat --format %s "$package") bytes"
done
