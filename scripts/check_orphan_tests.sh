#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# check_orphan_tests.sh [root]: every source and every *Test.sh below tests/ stands in the
# CMakeLists.txt of its folder or of one above, so that it is built and run; every file that is
# listed is there; and every CMakeLists.txt is reached.
set -euo pipefail
cd "${1:-$(dirname "${BASH_SOURCE[0]}")/..}"
failed=0

# What the build's lists name, as paths from here. A commented line lists nothing.
listed() {
  find tests -name CMakeLists.txt | while read -r list; do
    sed -e 's/#.*//' "$list" | tr '\n' ' ' |
      sed -e 's/add_subdirectory[[:space:]]*([[:space:]]*\([^[:space:])]*\)/\1\/CMakeLists.txt /g' |
      tr -s ' \t()"' '\n' |
      sed -n -e 's|^\${CMAKE_CURRENT_SOURCE_DIR}/||' -e '/\$/d' \
        -e "/^[^-].*\.\(cpp\|h\|sh\)\$\|\/CMakeLists\.txt\$/s|^|${list%CMakeLists.txt}|p"
  done | LC_ALL=C sort -u
}

present() {
  find tests -type f \( -name '*.cpp' -o -name '*Test.sh' -o -name CMakeLists.txt \) |
    grep -vx 'tests/CMakeLists.txt' | LC_ALL=C sort
}

while read -r orphan; do
  echo "$orphan: in no list of the build, so it never runs"
  failed=1
done < <(LC_ALL=C comm -23 <(present) <(listed))

while read -r path; do
  [[ -f $path ]] && continue
  echo "$path: listed in the build, but there is no such file"
  failed=1
done < <(listed)
exit $failed
