#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# package_windows.sh <manual.pdf>: makes the archive for Windows of the preset's build, in
# build/package: a folder that runs wherever it is unpacked. Without the manual if there is no such
# file. `./dev windows-package` builds all of it first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
bin=build/windows/bin
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/windows/CMakeCache.txt)
name=quillon-$version-windows-x64
folder=build/package/$name
triple=x86_64-w64-mingw32

rm -rf "$folder" "$folder.zip"
mkdir -p "$folder"/{firmware,licences,platforms,styles}

programs=(quillon.exe kvx.exe kvusb-conformance.exe kvusb-sim.dll kvusb-replay.dll)
# What not every version has.
for file in kvusb-hid.dll kvusb-host64.exe kvusb-host32.exe; do
  [[ ! -f $bin/$file ]] || programs+=("$file")
done
libraries=(Qt6Core.dll Qt6Gui.dll Qt6Widgets.dll platforms/qwindows.dll
  styles/qwindowsvistastyle.dll libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll)
for file in "${programs[@]}" "${libraries[@]}"; do
  cp -L "$bin/$file" "$folder/$file"
  "$triple-strip" --strip-unneeded "$folder/$file"
done

cp build/windows/share/firmware/*.kvx "$folder/firmware/"
cp lab/boards/default_rig.json "$folder/boards.json"
cp packaging/windows/quillon-demo.cmd "$folder/"
sed "s/@VERSION@/$version/" packaging/windows/README.txt >"$folder/README.txt"
sed -i 's/$/\r/' "$folder/README.txt" "$folder/quillon-demo.cmd"
if [[ -f ${1:-} ]]; then
  cp "$1" "$folder/quillon.pdf"
else
  echo "Without the manual: there is no ${1:-build/manual/quillon.pdf}"
fi

# Who made what is in it, and on which terms.
licences=$folder/licences
cp LICENSE "$licences/Quillon.txt"
copyright_of() {
  cp -L "/usr/share/doc/$1/copyright" "$licences/$2.txt"
}
copyright_of qt6-base-dev Qt
copyright_of gcc-mingw-w64-base GCC-runtime
copyright_of mingw-w64-common mingw-w64-runtime
copyright_of libcli11-dev CLI11
copyright_of nlohmann-json3-dev nlohmann-json
copyright_of libutfcpp-dev utfcpp
for text in LGPL-3 GPL-3 GPL-2 LGPL-2.1; do
  cp -L "/usr/share/common-licenses/$text" "$licences/$text.txt"
done

(cd build/package && cmake -E tar cf "$name.zip" --format=zip "$name")
echo "$PWD/$folder.zip: $(stat --format %s "$folder.zip") bytes"
