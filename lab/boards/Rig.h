// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "boards/Faults.h"
#include "boards/Nodes.h"

namespace quillon::sim {

// A node as the rig lists it.
struct NodeSpec {
  std::uint16_t loader_version = 0x0100;
  std::uint16_t flash_version = kNoFirmware;
  bool addressed = true;
  NodeMemory memory = FactoryNodeMemory();
};

// A board as the rig lists it.
struct BoardSpec {
  std::string id;
  std::uint16_t product = 0;
  std::string serial = "001";
  // The texts of the record, byte by byte; one that fills its field has no zero at its end.
  std::string product_text;
  std::string manufacturer = "Quillon Devices";
  std::optional<std::string> serial_text;  // instead of the serial number
  bool flash_mode = false;
  bool plugged = true;
  std::uint16_t firmware = 0;  // 0: the flash holds no valid image
  std::uint16_t loader = 0x0100;
  std::optional<std::uint16_t> queried;
  bool eeprom = true;
  std::array<std::optional<NodeSpec>, kNodeCount> nodes;
  Cards cards;
  std::map<std::string, std::vector<std::uint8_t>> blocks;
  std::size_t flash_bytes = 0x10000;
  std::chrono::milliseconds reboot{300};
  std::chrono::milliseconds erase{700};
  std::vector<Fault> faults;
};

// The boards on the bus, in the order in which they are detected within their type, and those that
// may be plugged in later. All of them together fit into one detection.
struct Rig {
  std::vector<BoardSpec> boards;
};

// Reads a rig of KVUSB_MOST_BOARDS at most, or says in a sentence what is wrong with it and where.
//
//   {"boards": [{                 the object knows no other key
//     "id": "joystick-1",         1 to 26 of a-z 0-9 - _, the board's own; names its state file
//     "product": "0x0910",        USB product id, the same in both modes
//     "serial": "001",            three digits; "001" without it
//     "name": "Test board",       product text; by the product without it; " (simulated)" is added
//     "manufacturer": "...",      "Quillon Devices" without it
//     "mode": "device",           or "flash"; "device" without it
//     "plugged": true,            false: not on the bus until somebody plugs it in
//     "firmware": "2.82",         version in the flash, or "none" for no valid image (mode "flash")
//     "loader": "1.00",           version of the loader, "1.00" without it
//     "queried": "1.13",          what the running firmware answers to the identity query until the
//                                 next flash update; without it the firmware's version
//     "eeprom": true,             node boards: whether there is one, true without it
//     "nodes": [{                 node boards: the active nodes
//       "node": 1,                1 to 12
//       "loader": "1.00",         "1.00" without it
//       "flash": "1.30",          or "none"
//       "blocks": {               settings other than the factory's, in hexadecimal
//         "ports": "01 00 19 00"  names and sizes of the two ports as in Nodes.cpp
//       }
//     }],
//     "cards": [{                 node boards: expansion cards that are new, or that come and go
//       "card": 1,                1 (nodes 5 to 8) or 2 (nodes 9 to 12), one with nodes
//       "addressed": false,       false: its nodes are new; true without it
//       "plugged": true,          whether it is plugged at the start, true without it
//       "moves": [3, 5]           before which status queries it is pulled or plugged, in turn
//     }],
//     "blocks": {                 settings other than the factory's, in hexadecimal
//       "hat": "01 AA 03 55"      names and sizes as in Family.cpp
//     },
//     "flash_bytes": 65536,       size of the flash; 65536 without it
//     "reboot_ms": 300,           how long a restarting board is away
//     "erase_ms": 700,            how long an erase takes
//     "name_hex": "4A 07 ...",    bytes of the three texts of the record, to make them garbage;
//     "manufacturer_hex": "",     "..." at the end repeats the last byte to the end of the field
//     "serial_hex": "FF...",
//     "faults": [{                what goes wrong, see Faults.h
//       "kind": "read_fails",     write_fails read_fails stall wrong_echo short_answer status
//                                 vanish close_fails
//       "command": "0x11",        without it any command
//       "function": "0x25",       node commands: without it any function
//       "node": 1,                node commands: without it any node
//       "nth": 1,                 the first that goes wrong, 1 without it
//       "times": 1,               how many go wrong, 0 for all from there on, 1 without it
//       "value": 4                the wrong echo, the status, or the number of bytes
//     }]
//   }]}
std::variant<Rig, std::string> ParseRig(std::string_view json);

// The text of the rig that is built in, and the rig that it lists: every family, both modes, old
// and new firmware.
std::string_view DefaultRigText();
Rig DefaultRig();

}  // namespace quillon::sim
