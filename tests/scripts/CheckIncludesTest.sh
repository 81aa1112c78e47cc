#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# CheckIncludesTest.sh <folder of the scripts>
set -euo pipefail
check=$1/check_includes.sh
. "$(dirname "${BASH_SOURCE[0]}")/Claims.sh"

put scripts/include_directions.txt '# a comment' '' 'low no' 'low/inner no low' 'high yes low' \
  'side yes low' 'tests yes * testing'
put src/low/Low.h '#include <vector>' '#include <sys/types.h>'
put src/low/inner/Inner.h '#include "low/Low.h"'
put src/high/High.h '#include <QWidget>' '#include "low/Low.h"' '#include "high/Other.h"'
put src/high/High.cpp '#include "high/High.h"' '#include "High.moc"'
put tests/high/HighTest.cpp '#include "high/High.h"' '#include "low/inner/Inner.h"' \
  '#include "testing/Own.h"'
passes "includes downwards, within a folder and from the tests are fine"

# break_with <claim> <file> <line> <text>: the line, second in the file, is complained about.
break_with() {
  put "$2" '' "$3"
  complains "$1" "$2:2: $4"
  rm "$2"
}
break_with "upwards" src/low/Bad.h '#include "high/High.h"' 'low may not include high'
break_with "sideways" src/side/Bad.cpp '#  include "high/High.h"' 'side may not include high'
break_with "a folder's inner folder is another one" src/high/Bad.cpp '#include "low/inner/Inner.h"' \
  'high may not include low/inner'
break_with "angle brackets hide nothing" src/low/Bad.h '#include <high/High.h>' 'low may not'
break_with "the test's helpers" src/high/Bad.cpp '#include "testing/Own.h"' 'high may not'
break_with "climbing" src/side/Bad.cpp '#include "../high/High.h"' 'side may not'
break_with "Qt where none is" src/low/Bad.cpp '#include <QString>' 'low does without Qt'
break_with "Qt's modules" src/low/inner/Bad.cpp '#include <QtCore/QString>' 'low/inner does without Qt'
break_with "no folder" src/high/Bad.cpp '#include "High.h"' '"High.h" says no folder'
break_with "what tests may not reach" tests/Bad.cpp '#include "elsewhere/X.h"' 'tests may not'
put src/new/New.h ''
complains "a folder without a line" 'folder new has no line'
rm -r src/new

put docs/ARCHITECTURE.md 'Text' '<!-- include-directions -->' '```' 'low     no' \
  'low/inner no low' 'high yes low' 'side yes low' 'tests yes * testing' '```' \
  '<!-- /include-directions -->' 'text'
passes "the document's table may be spaced as it likes"
sed -i 's/^side yes low/side yes low high/' docs/ARCHITECTURE.md
complains "a differing document" 'side yes low high'
put docs/ARCHITECTURE.md 'Text only'
complains "a document without the table" 'its table of include directions differs'

exit $((failures > 0))
