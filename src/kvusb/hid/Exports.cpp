// SPDX-License-Identifier: MIT
//
// libkvusb-hid: the boards on the machine's USB as a HID access library (see kvusb.h), over hidapi.
// Its hot-plug events are the system's, which the program follows by itself.
#include "kvusb/Exports.h"

#include <string>

#include "kvusb/hid/HidBoards.h"
#include "kvusb/kvusb.h"

namespace quillon {
namespace {

HidBoards& TheBoards() {
  static HidBoards boards;
  return boards;
}

}  // namespace
}  // namespace quillon

extern "C" {

KVUSB_EXPORT std::int32_t KVUSB_CALL DetectHID(std::uint32_t* count, DeviceRecord* first,
                                               std::uint32_t type) {
  using namespace quillon;
  return Guarded(0, [&] { return TheBoards().Detect(count, first, type); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL WriteData(DeviceRecord* record, std::uint8_t* packet) {
  using namespace quillon;
  return Guarded(KVUSB_WRITE_FAILED, [&] { return TheBoards().Write(record, packet); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL ReadData(DeviceRecord* record, std::uint8_t* packet) {
  using namespace quillon;
  return Guarded(KVUSB_READ_FAILED, [&] { return TheBoards().Read(record, packet); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL CloseDevices(std::uint32_t count, DeviceRecord* first) {
  using namespace quillon;
  return Guarded(0, [&] { return TheBoards().Close(count, first); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL DescribeProblem(const DeviceRecord* record, char* text,
                                                     std::uint32_t size) {
  using namespace quillon;
  return Guarded(KVUSB_PROBLEM_NONE, [&] {
    std::string sentence;
    const std::int32_t kind = TheBoards().Describe(record, sentence);
    CopyText(sentence, text, size);
    return kind;
  });
}

}  // extern "C"
