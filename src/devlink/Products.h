// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>

namespace quillon {

// What kind of board a product is; chooses the pages that are shown for it.
enum class BoardFamily {
  kNone,           // a product that is not in the table: the home page
  kJoystick,       // joystick controller with expansion port
  kSmallJoystick,  // joystick controller without expansion port
  kScanMatrix,     // scan-matrix digital inputs and expansion port
  kDigitalPorts,   // digital ports controller
  kInputBanks,     // digital ports controller, second variant
  kNodeSystem,     // node I/O system
  kSpi,            // SPI controller
  kWithoutPages,   // a known board that has no pages, not even the home page
};

// The tabs [first, last] after "Device Configuration", counted from 1. first > last: none.
struct TabRange {
  int first = 1, last = 0;
};

// The firmware that this version of the program works with, as version words. `node` is 0 where the
// product has no nodes.
struct RequiredFirmware {
  std::uint16_t application = 0, loader = 0, node = 0;
};

// Everything that a USB product id decides.
struct Product {
  std::uint16_t id = 0;
  BoardFamily family = BoardFamily::kNone;
  RequiredFirmware required{};
  // The device type (KVUSB_TYPE_...) that the report calls Device Mode.
  std::uint32_t device_mode = 0;
  // Whether a board of the other firmware type (2 or 3) restarts like one in Device Mode.
  bool restarts_alike = false;
  // The tabs that a report enables: in Device Mode with suitable firmware, and in Flash Mode.
  TabRange in_device_mode{}, in_flash_mode{};
  // Whether "Load default settings" of the tree reaches the board. Only one of a family's two
  // products has that, on purpose.
  bool defaults_from_tree = false;
  // Whether the tree lists the board's nodes.
  bool nodes_in_tree = false;
};

// All products, in the order of the requirements' table.
std::span<const Product> Products();

// The product's row; for an id that is in no row, one of family kNone that requires nothing.
const Product& ProductOf(std::uint16_t product_id);

// Some product of the family. Its products differ only in the id, `defaults_from_tree` and
// `nodes_in_tree`.
const Product& AnyProductOf(BoardFamily family);

BoardFamily FamilyOf(std::uint16_t product_id);

// The required application firmware, or 0 for a product that is in no row.
std::uint32_t LookupRequiredVersion(std::uint32_t product_id);

}  // namespace quillon
