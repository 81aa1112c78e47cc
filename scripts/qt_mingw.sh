#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Prints the folder of Qt for 64-bit Windows: the one that QT_MINGW names, else the one beside the
# checkout, else one in the user's cache. Builds the last one if it is not there and --build is given,
# from Debian's own source package, so that its tools (moc, rcc, uic) are those of qt6-base-dev.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cache=${XDG_CACHE_HOME:-$HOME/.cache}/quillon
made=$cache/qt6-mingw

for folder in "${QT_MINGW:-}" "$here/../shared/qt6-mingw" "$made"; do
  if [[ -n $folder && -f $folder/lib/cmake/Qt6/Qt6Config.cmake ]]; then
    (cd "$folder" && pwd)
    exit
  fi
done
[[ -z ${QT_MINGW:-} ]] || {
  echo "qt_mingw.sh: there is no Qt in QT_MINGW, $QT_MINGW" >&2
  exit 1
}
[[ ${1:-} == --build ]] || exit 1
exec 3>&1 >&2

work=$cache/qt6-build
mkdir -p "$work/apt/parts" "$work/apt/lists/partial" "$work/apt/archives/partial"
cd "$work"
echo "Qt for Windows is built once, in $work: that takes half an hour, and 1.4 GB for its time."

# The sources' list is a private one, so that the machine's own stays as it is.
for list in /etc/apt/sources.list.d/*.sources; do
  [[ -f $list ]] && sed 's/^Types:.*/Types: deb-src/' "$list" >"apt/parts/${list##*/}"
done
for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
  [[ -f $list ]] && sed -n 's/^deb /deb-src /p' "$list" >"apt/parts/${list##*/}.list"
done
apt=(apt-get -o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$work/apt/parts"
  -o "Dir::State::Lists=$work/apt/lists" -o "Dir::Cache=$work/apt")
"${apt[@]}" --quiet update
version=$(dpkg-query --show --showformat '${source:Version}' qt6-base-dev)
"${apt[@]}" --quiet source --download-only "qt6-base=$version"

rm -rf qtbase-* debian build
tar -xf qt6-base_*.orig.tar.xz
tar -xf qt6-base_*.debian.tar.xz
cd qtbase-*/
grep -v '^#' ../debian/patches/series | grep . | while read -r patch; do
  patch -p1 -s --forward <"../debian/patches/$patch"
done

# What a program with widgets needs that asks the web; all of it inside, as Debian has none of it for
# Windows. Debian's sources lack what tablets and SQLite need. Without Direct2D the fonts of
# DirectWrite do not link.
cmake -G Ninja -S . -B ../build -DCMAKE_TOOLCHAIN_FILE="$here/cmake/mingw64.cmake" \
  -DQT_QMAKE_TARGET_MKSPEC=win32-g++ -DCMAKE_INSTALL_PREFIX="$made.new" \
  -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=ON -DCMAKE_CXX_COMPILER_LAUNCHER=ccache \
  -DQT_BUILD_TESTS=OFF -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TOOLS_WHEN_CROSSCOMPILING=OFF \
  -DINPUT_opengl=no -DINPUT_dbus=no -DINPUT_openssl=no -DFEATURE_schannel=ON \
  -DFEATURE_icu=OFF -DFEATURE_sql=OFF -DFEATURE_xml=OFF -DFEATURE_concurrent=OFF \
  -DFEATURE_printsupport=OFF -DFEATURE_vulkan=OFF -DFEATURE_tabletevent=OFF -DFEATURE_glib=OFF \
  -DFEATURE_pkg_config=OFF -DFEATURE_system_zlib=OFF -DFEATURE_system_png=OFF \
  -DFEATURE_system_jpeg=OFF -DFEATURE_jpeg=OFF -DFEATURE_system_pcre2=OFF \
  -DFEATURE_system_harfbuzz=OFF -DFEATURE_system_freetype=OFF \
  -DFEATURE_system_doubleconversion=OFF -DFEATURE_zstd=OFF -DFEATURE_direct2d=OFF \
  -DFEATURE_directwrite3=OFF
cmake --build ../build --parallel "$(nproc)"
cmake --install ../build --strip
mkdir -p "$made.new/licences"
cp LICENSES/* "$made.new/licences/"
mv "$made.new" "$made"
rm -rf "$work"
echo "$made" >&3
