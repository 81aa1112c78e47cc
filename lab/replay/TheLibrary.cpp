// SPDX-License-Identifier: MIT
//
// libkvusb-replay: a recorded session as a HID library (see kvusb.h).
//
//   QUILLON_REPLAY  file with the trace, as QUILLON_TRACE wrote it
//
// The variable is read at the first call. With a trace that cannot be played there are no boards;
// DescribeProblem(NULL) says why, and later where the program left the trace.
#include <cstdlib>

#include "kvusb/Exports.h"
#include "replay/Replay.h"
#include "storage/FilePath.h"

quillon::HidLibrary& quillon::TheLibrary() {
  static Replay replay([] {
    const char* file = std::getenv("QUILLON_REPLAY");
    return FilePath(file == nullptr ? "" : file);
  }());
  return replay;
}
