#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# CheckOrphanTestsTest.sh <folder of the scripts>
set -euo pipefail
check=$1/check_orphan_tests.sh
. "$(dirname "${BASH_SOURCE[0]}")/Claims.sh"

put tests/CMakeLists.txt 'add_subdirectory(low)' 'quillon_test(high SOURCES high/HighTest.cpp)'
put tests/low/CMakeLists.txt 'quillon_test(low' '  SOURCES LowTest.cpp' '    "deep/DeepTest.cpp"' \
  '  LINK quillon-low)' 'add_test(NAME x COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/x.sh)'
put tests/low/LowTest.cpp ''
put tests/low/x.sh ''
put tests/low/deep/DeepTest.cpp ''
put tests/high/HighTest.cpp ''
passes "files in the list of their folder or of one above are fine"

put tests/low/LostTest.cpp ''
complains "a test in no list" 'tests/low/LostTest.cpp: in no list'
put tests/low/CMakeLists.txt "$(cat tests/low/CMakeLists.txt)" '# LostTest.cpp'
complains "a test in a comment of the list" 'tests/low/LostTest.cpp: in no list'
rm tests/low/LostTest.cpp

put tests/high/LowTest.cpp ''
complains "a test that has a listed one's name in another folder" 'tests/high/LowTest.cpp: in no list'
rm tests/high/LowTest.cpp

mv tests/high/HighTest.cpp elsewhere
complains "a listed file that is not there" 'tests/high/HighTest.cpp: listed in the build, but'
mv elsewhere tests/high/HighTest.cpp

put tests/lost/CMakeLists.txt 'quillon_test(lost SOURCES LostTest.cpp)'
put tests/lost/LostTest.cpp ''
complains "a folder that the build never enters" 'tests/lost/CMakeLists.txt: in no list'
rm -r tests/lost
passes "and all is well again"

exit $((failures > 0))
