#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Draws src/res/icons/<name>.svg to png/<name>-<size>.png in every size that sizes.txt lists. The
# PNGs are kept, because not every platform's Qt has its Svg module. Those of the program itself also
# become packaging/windows/quillon.ico.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../src/res/icons"

mkdir -p png
listed=' '
while read -r name sizes; do
  [[ -n $name && $name != \#* ]] || continue
  [[ -f $name.svg ]] || { echo "sizes.txt lists $name, but $name.svg is missing" >&2; exit 1; }
  listed+="$name "
  for size in $sizes; do
    rsvg-convert --width "$size" --height "$size" --output "png/$name-$size.png" "$name.svg"
  done
done <sizes.txt

for svg in *.svg; do
  [[ $listed == *" ${svg%.svg} "* ]] || { echo "$svg has no line in sizes.txt" >&2; exit 1; }
done

# The system wants the large one compressed and the others not.
icotool --create --output ../../../packaging/windows/quillon.ico \
  png/app-16.png png/app-32.png png/app-48.png --raw=png/app-256.png
