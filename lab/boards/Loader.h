// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "boards/Report.h"

namespace quillon::sim {

// The application flash of a board or a node, up to the last byte written. What lies above it, and
// what was left out before it, reads 0xFF.
struct FlashImage {
  std::vector<std::uint8_t> bytes;
  bool valid = false;

  // Puts `data` at `address`.
  void Store(std::size_t address, std::span<const std::uint8_t> data);

  // The image of a board starts with its firmware version word, high byte first: this is the
  // version that the board reports once the image runs. 0 when the image has none.
  std::uint16_t Version() const;

  // A valid image of that version.
  static FlashImage Of(std::uint16_t version);
};

// The flash commands of a board in Flash Mode.
//
//   8  erases the flash; the image is invalid from here on. Takes `erase_time`.
//   0  stores a record: length, address low, address high in bytes 1 to 3, data from byte 6.
//      CMD_FAIL before an erase since the last start or when the length is above 59; FLASH_FAIL
//      when the record ends beyond the flash
//   1  finishes: the image becomes valid if it has a version word; CONFIG_FAIL if it has none,
//      CMD_FAIL before an erase
//
// A start without a finish, as after a loss of power, leaves the image invalid.
class Loader {
 public:
  Loader(std::size_t flash_bytes, std::chrono::milliseconds erase_time)
      : flash_bytes_(flash_bytes), erase_time_(erase_time) {}

  // Nothing when the request is no flash command.
  std::optional<Reply> Handle(FlashImage& flash, Request request);
  void Restart() { erased_ = false; }

 private:
  Reply StoreRecord(FlashImage& flash, Request request) const;
  Reply Finish(FlashImage& flash);

  std::size_t flash_bytes_;
  std::chrono::milliseconds erase_time_;
  bool erased_ = false;
};

}  // namespace quillon::sim
