// SPDX-License-Identifier: MIT
//
// The C functions of kvusb.h over TheLibrary(). Compiled into each of our libraries, whose
// exports.map says which of them it exports.
#include <string>

#include "kvusb/AccessLibrary.h"
#include "kvusb/CopyText.h"

namespace quillon {
namespace {

// Runs the call; an exception ends here, as the given result.
template <typename Call>
std::int32_t Guarded(std::int32_t failure, Call call) noexcept {
  try {
    return call(TheLibrary());
  } catch (...) {
    return failure;
  }
}

}  // namespace
}  // namespace quillon

extern "C" {

KVUSB_EXPORT std::int32_t KVUSB_CALL DetectHID(std::uint32_t* count, DeviceRecord* first,
                                               std::uint32_t type) {
  return quillon::Guarded(0, [&](auto& library) { return library.Detect(count, first, type); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL WriteData(DeviceRecord* record, std::uint8_t* packet) {
  return quillon::Guarded(KVUSB_WRITE_FAILED,
                          [&](auto& library) { return library.Write(record, packet); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL ReadData(DeviceRecord* record, std::uint8_t* packet) {
  return quillon::Guarded(KVUSB_READ_FAILED,
                          [&](auto& library) { return library.Read(record, packet); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL CloseDevices(std::uint32_t count, DeviceRecord* first) {
  return quillon::Guarded(0, [&](auto& library) { return library.Close(count, first); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL SetDeviceChangeHandler(DeviceChangeHandler handler,
                                                            void* context) {
  return quillon::Guarded(0, [&](auto& library) {
    library.SetChangeHandler(handler, context);
    return 1;
  });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL DescribeProblem(const DeviceRecord* record, char* text,
                                                     std::uint32_t size) {
  return quillon::Guarded(KVUSB_PROBLEM_NONE, [&](auto& library) {
    quillon::CopyText("", text, size);
    std::string sentence;
    const std::int32_t kind = library.Describe(record, sentence);
    quillon::CopyText(sentence, text, size);
    return kind;
  });
}

}  // extern "C"
