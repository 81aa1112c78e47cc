// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "kvusb/kvusb.h"

namespace quillon {

// One of our HID access libraries as a class. Exports.cpp, which is compiled into each of them,
// puts TheLibrary() behind the C functions of kvusb.h: the methods have the arguments, results and
// effects written there, and take null pointers as a failure. They may throw, which is a failure,
// and so may TheLibrary(); DescribeProblem(NULL) tells what the last exception said.
class AccessLibrary {
 public:
  AccessLibrary() = default;
  AccessLibrary(const AccessLibrary&) = delete;
  AccessLibrary& operator=(const AccessLibrary&) = delete;
  virtual ~AccessLibrary() = default;

  virtual std::int32_t Detect(std::uint32_t* count, DeviceRecord* first, std::uint32_t type) = 0;
  virtual std::int32_t Write(const DeviceRecord* record, const std::uint8_t* packet) = 0;
  virtual std::int32_t Read(const DeviceRecord* record, std::uint8_t* packet) = 0;
  virtual std::int32_t Close(std::uint32_t count, const DeviceRecord* first) = 0;

  // The kind of problem, KVUSB_PROBLEM_..., and its sentence in `text`.
  virtual std::int32_t Describe(const DeviceRecord* record, std::string& text) = 0;

  // Only for libraries whose exports.map has SetDeviceChangeHandler.
  virtual void SetChangeHandler(DeviceChangeHandler /*handler*/, void* /*context*/) {}
};

// Defined by each library; made at the first call.
AccessLibrary& TheLibrary();

}  // namespace quillon
