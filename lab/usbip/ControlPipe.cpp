// SPDX-License-Identifier: MIT
#include "usbip/ControlPipe.h"

#include <algorithm>
#include <optional>

namespace quillon::usbip {
namespace {

enum Recipient : std::uint8_t {
  kToDevice = 0x00,
  kToInterface = 0x01,
  kToEndpoint = 0x02,
  kToHidInterface = 0x21,
  kFromDevice = 0x80,
  kFromInterface = 0x81,
  kFromEndpoint = 0x82,
  kFromHidInterface = 0xA1,
};

enum Request : std::uint8_t {
  kGetStatus = 0,
  kClearFeature = 1,
  kSetFeature = 3,
  kSetAddress = 5,
  kGetDescriptor = 6,
  kGetConfiguration = 8,
  kSetConfiguration = 9,
  kGetInterface = 10,
  kSetInterface = 11,
};

enum HidRequest : std::uint8_t {
  kGetIdle = 2,
  kSetReport = 9,
  kSetIdle = 10,
};

constexpr std::uint8_t kOutputReport = 2;

std::uint16_t Word(std::uint8_t low, std::uint8_t high) {
  return static_cast<std::uint16_t>(low | high << 8);
}

std::uint8_t Low(std::uint16_t word) { return static_cast<std::uint8_t>(word & 0xFF); }
std::uint8_t High(std::uint16_t word) { return static_cast<std::uint8_t>(word >> 8); }

ControlPipe::Outcome Done(Bytes data = {}) { return {ControlPipe::Reply::kDone, std::move(data)}; }

ControlPipe::Outcome DoneIf(bool right) { return right ? Done() : ControlPipe::Outcome{}; }

ControlPipe::Outcome Found(std::optional<Bytes> descriptor) {
  return descriptor ? Done(std::move(*descriptor)) : ControlPipe::Outcome{};
}

}  // namespace

Setup::Setup(const std::array<std::uint8_t, 8>& bytes)
    : type(bytes[0]),
      request(bytes[1]),
      value(Word(bytes[2], bytes[3])),
      index(Word(bytes[4], bytes[5])),
      length(Word(bytes[6], bytes[7])) {}

ControlPipe::Outcome ControlPipe::Handle(const Setup& setup) {
  Outcome outcome;
  switch (setup.type) {
    case kToDevice:
    case kFromDevice:
      outcome = OfDevice(setup);
      break;
    case kToInterface:
    case kFromInterface:
      outcome = OfInterface(setup);
      break;
    case kToEndpoint:
      outcome = DoneIf(setup.request == kClearFeature || setup.request == kSetFeature);
      break;
    case kFromEndpoint:
      if (setup.request == kGetStatus) outcome = Done({0, 0});
      break;
    case kToHidInterface:
    case kFromHidInterface:
      outcome = OfHidClass(setup);
      break;
    default:
      break;
  }
  outcome.data.resize(std::min<std::size_t>(outcome.data.size(), setup.length));
  return outcome;
}

ControlPipe::Outcome ControlPipe::OfDevice(const Setup& setup) {
  if (setup.type == kFromDevice) {
    switch (setup.request) {
      case kGetStatus:
        return Done({0, 0});
      case kGetDescriptor:
        return Found(descriptors_.Find(High(setup.value), Low(setup.value)));
      case kGetConfiguration:
        return Done({configuration_});
      default:
        return {};
    }
  }
  if (setup.request == kSetConfiguration && setup.value <= 1) {
    configuration_ = Low(setup.value);
    return Done();
  }
  return DoneIf(setup.request == kSetAddress || setup.request == kClearFeature ||
                setup.request == kSetFeature);
}

ControlPipe::Outcome ControlPipe::OfInterface(const Setup& setup) const {
  if (setup.index >= descriptors_.interfaces.size()) return {};
  if (setup.type == kToInterface) return DoneIf(setup.request == kSetInterface && setup.value == 0);
  switch (setup.request) {
    case kGetStatus:
      return Done({0, 0});
    case kGetDescriptor:
      return Found(descriptors_.FindOfInterface(High(setup.value), setup.index));
    case kGetInterface:
      return Done({0});
    default:
      return {};
  }
}

ControlPipe::Outcome ControlPipe::OfHidClass(const Setup& setup) const {
  if (setup.index >= descriptors_.interfaces.size()) return {};
  if (setup.type == kFromHidInterface) return setup.request == kGetIdle ? Done({0}) : Outcome{};
  if (setup.request == kSetReport && High(setup.value) == kOutputReport)
    return {descriptors_.interfaces[setup.index].configuration ? Reply::kOutputReport
                                                               : Reply::kStall};
  return DoneIf(setup.request == kSetIdle);
}

}  // namespace quillon::usbip
