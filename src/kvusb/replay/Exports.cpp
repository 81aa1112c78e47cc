// SPDX-License-Identifier: MIT
//
// libkvusb-replay: a recorded session as a HID access library (see kvusb.h).
//
//   QUILLON_REPLAY  file with the trace, as QUILLON_TRACE wrote it
//
// The variable is read at the first call. With a trace that cannot be played there are no boards;
// DescribeProblem(NULL) says why, and later where the program left the trace.
#include "kvusb/Exports.h"

#include <cstdlib>
#include <string>

#include "kvusb/kvusb.h"
#include "kvusb/replay/Replay.h"

namespace quillon {
namespace {

Replay& TheReplay() {
  static Replay replay([] {
    const char* file = std::getenv("QUILLON_REPLAY");
    return file == nullptr ? "" : file;
  }());
  return replay;
}

}  // namespace
}  // namespace quillon

extern "C" {

KVUSB_EXPORT std::int32_t KVUSB_CALL DetectHID(std::uint32_t* count, DeviceRecord* first,
                                               std::uint32_t type) {
  using namespace quillon;
  return Guarded(0, [&] { return TheReplay().Detect(count, first, type); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL WriteData(DeviceRecord* record, std::uint8_t* packet) {
  using namespace quillon;
  return Guarded(KVUSB_WRITE_FAILED, [&] { return TheReplay().Write(record, packet); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL ReadData(DeviceRecord* record, std::uint8_t* packet) {
  using namespace quillon;
  return Guarded(KVUSB_READ_FAILED, [&] { return TheReplay().Read(record, packet); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL CloseDevices(std::uint32_t count, DeviceRecord* first) {
  using namespace quillon;
  return Guarded(0, [&] { return TheReplay().Close(count, first); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL SetDeviceChangeHandler(DeviceChangeHandler handler,
                                                            void* context) {
  using namespace quillon;
  return Guarded(0, [&] {
    TheReplay().SetChangeHandler(handler, context);
    return 1;
  });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL DescribeProblem(const DeviceRecord* record, char* text,
                                                     std::uint32_t size) {
  using namespace quillon;
  return Guarded(0, [&] {
    CopyText("", text, size);
    // A trace knows nothing of problems of single boards.
    const std::string problem = record == nullptr ? TheReplay().Problem() : std::string();
    CopyText(problem, text, size);
    return problem.empty() ? KVUSB_PROBLEM_NONE : KVUSB_PROBLEM_OTHER;
  });
}

}  // extern "C"
