// SPDX-License-Identifier: MIT
//
// The C functions of kvusb.h over TheLibrary(). Compiled into each of our libraries, whose
// exports.map says which of them it exports.
//
// C has pointers where the class has references and spans: a null pointer never reaches a library,
// and of the caller's table, whose size nobody tells, the room that kvusb.h asks for is taken.
#include "kvusb/Exports.h"

#include <array>
#include <cstdio>
#include <exception>

#include "kvusb/CopyText.h"

namespace quillon {
namespace {

// What the last exception said; DescribeProblem(NULL) alone can tell. Kept in place, because memory
// may be just what there was none of.
std::array<char, 512> last_exception{};

void Note(const char* what) {
  const bool speaks = what != nullptr && *what != '\0';
  CopyText(speaks ? what : "unknown exception", last_exception.data(), last_exception.size());
}

// Runs the call; an exception ends here, as the given result. One that keeps the library from being
// made comes again with every call.
template <typename Call>
std::int32_t Guarded(std::int32_t failure, Call call) noexcept {
  try {
    return call(TheLibrary());
  } catch (const std::exception& error) {
    Note(error.what());
  } catch (...) {
    Note(nullptr);
  }
  return failure;
}

std::int32_t DescribeException(char* text, std::uint32_t size) noexcept {
  if (last_exception[0] == '\0') return KVUSB_PROBLEM_NONE;
  std::array<char, last_exception.size() + 32> sentence{};
  std::snprintf(sentence.data(), sentence.size(), "The HID library failed: %s.",
                last_exception.data());
  CopyText(sentence.data(), text, size);
  return KVUSB_PROBLEM_OTHER;
}

}  // namespace
}  // namespace quillon

extern "C" {

KVUSB_EXPORT std::int32_t KVUSB_CALL DetectHID(std::uint32_t* count, DeviceRecord* first,
                                               std::uint32_t type) {
  return quillon::Guarded(0, [&](auto& library) {
    if (count == nullptr || first == nullptr) return 0;
    return library.DetectHID(*count, std::span(first, KVUSB_MOST_BOARDS), type);
  });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL WriteData(DeviceRecord* record, std::uint8_t* packet) {
  return quillon::Guarded(KVUSB_WRITE_FAILED, [&](auto& library) -> std::int32_t {
    if (record == nullptr || packet == nullptr) return KVUSB_WRITE_FAILED;
    return library.WriteData(*record, quillon::PacketSpan(packet, KVUSB_PACKET_BYTES));
  });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL ReadData(DeviceRecord* record, std::uint8_t* packet) {
  return quillon::Guarded(KVUSB_READ_FAILED, [&](auto& library) -> std::int32_t {
    if (record == nullptr || packet == nullptr) return KVUSB_READ_FAILED;
    return library.ReadData(*record, quillon::PacketSpan(packet, KVUSB_PACKET_BYTES));
  });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL CloseDevices(std::uint32_t count, DeviceRecord* first) {
  // Where the library cannot be made, there is nothing to close, which succeeds.
  return quillon::Guarded(count == 0 ? 1 : 0, [&](auto& library) {
    if (count > 0 && first == nullptr) return 0;
    return library.CloseDevices(std::span(first, count));
  });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL SetDeviceChangeHandler(DeviceChangeHandler handler,
                                                            void* context) {
  return quillon::Guarded(
      0, [&](auto& library) { return library.SetDeviceChangeHandler(handler, context) ? 1 : 0; });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL DescribeProblem(const DeviceRecord* record, char* text,
                                                     std::uint32_t size) {
  quillon::CopyText("", text, size);
  const std::int32_t kind = quillon::Guarded(KVUSB_PROBLEM_NONE, [&](auto& library) {
    const quillon::Problem problem = library.DescribeProblem(record);
    quillon::CopyText(problem.sentence, text, size);
    return problem.kind;
  });
  const bool tell = kind == KVUSB_PROBLEM_NONE && record == nullptr;
  return tell ? quillon::DescribeException(text, size) : kind;
}

}  // extern "C"
