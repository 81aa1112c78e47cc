// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "boards/Loader.h"
#include "boards/Report.h"

namespace quillon::sim {

// Four nodes stand on the board, four more on each expansion card.
inline constexpr std::size_t kNodeCount = 12, kCardCount = 2, kNodesTogether = 4;
inline constexpr std::uint16_t kNoFirmware = 0xFFFF;

// Settings of a node, by address:
//
//    6   8       words of the two ports
//   10  25       15 output bytes of each port
//   40  41       display of each port
//   42  52 .. 61 10 DAC channels of each port
using NodeMemory = std::array<std::uint8_t, 62>;

NodeMemory FactoryNodeMemory();

// The settings of one kind, those of the first port before those of the second.
struct PortBlock {
  const char* name;
  std::uint8_t read, write;  // node functions
  std::uint8_t offset;       // of the first port
  std::uint8_t bytes;        // of one port
};

std::span<const PortBlock> PortBlocks();

struct Node {
  bool active = false;
  bool addressed = true;  // false on a new expansion card, until the two address steps
  std::uint16_t loader_version = kNoFirmware;
  std::uint16_t flash_version = kNoFirmware;
  FlashImage flash;  // `valid` stays unused: a node runs when it has a flash version
  NodeMemory memory = FactoryNodeMemory();
};

using Nodes = std::array<Node, kNodeCount>;

// Whether an expansion card is plugged into the board. What its nodes keep stays on the card.
struct Card {
  bool plugged = true;
  // The status queries, counted from 1 since the program started, before whose answer the card is
  // pulled or plugged, in turn.
  std::vector<std::uint32_t> moves;
};

using Cards = std::array<Card, kCardCount>;

// The node side of a node board.
//
// 0x1D answers whether there is an EEPROM (byte 1), then per node from byte 2: active, loader
// version, flash version, high bytes first.
//
// 0x1C carries the node function in byte 6 and the node in byte 7. The answer's byte 0 is the
// function when it was carried out.
//
//   function           mode    does
//   8 erase            Flash   forgets the firmware and its version; takes the erase time
//   0 record           Flash   length and address in bytes 1 to 3, data from byte 9. CMD_FAIL
//                              before an erase, CRC_FAIL above the 56 bytes that reach the node,
//                              FLASH_FAIL beyond the flash
//   1 finish           Flash   makes bytes 2 and 3 (low byte first) the version; CMD_FAIL before an
//                              erase; CONFIG_FAIL without a record, after one that failed, or with
//                              a version that means none (0, 0xFFFF)
//   7, 9 address       both    the two steps for a node of an expansion card (4 to 11), in this
//                              order, while no other card is plugged; else CMD_FAIL
//   0x25 .. 0x35, 0x14, 0x10   Device  read and write settings; offset, count and length must be
//                              the ones of a port, a write has byte 5 = 1; else refused
//
// A node that is not active, or whose card is not plugged, answers NODE_FAIL. So does a node
// without an address, although its status is active, to all but the address steps. Flash functions
// outside Flash Mode are CMD_FAIL. From an erase to a finish that is carried out, a node has no
// version.
class NodeBus {
 public:
  NodeBus(bool eeprom, Cards cards, std::size_t flash_bytes, std::chrono::milliseconds erase_time)
      : eeprom_(eeprom),
        cards_(std::move(cards)),
        flash_bytes_(flash_bytes),
        erase_time_(erase_time) {}

  // Nothing when the request is no node command.
  std::optional<Reply> Handle(Nodes& nodes, bool flash_mode, Request request);
  // A request that failed on its way to its node. An image that lacks a record is never finished.
  void Miss(Request request);
  void Restart() { sessions_ = {}; }

 private:
  // What a node forgets at a restart.
  struct Session {
    bool erased = false;
    bool lacks_record = false;
    bool address_began = false;
  };

  void MoveCards();
  bool IsThere(const Nodes& nodes, std::size_t number) const;
  Reply Status(const Nodes& nodes) const;
  Reply Forward(Nodes& nodes, bool flash_mode, Request request);
  Reply Address(Nodes& nodes, std::size_t number, std::uint8_t function);
  Reply Flash(Node& node, Session& session, Request request) const;
  Reply StoreRecord(Node& node, Request request) const;

  bool eeprom_;
  Cards cards_;
  std::uint32_t status_queries_ = 0;
  std::size_t flash_bytes_;
  std::chrono::milliseconds erase_time_;
  std::array<Session, kNodeCount> sessions_{};
};

}  // namespace quillon::sim
