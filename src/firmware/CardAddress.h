// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>

#include "devlink/NodeRecord.h"
#include "kvusb/HidLibrary.h"

namespace quillon {

// The nodes after those of the board itself sit on expansion cards, counted from 1.
inline constexpr std::size_t kExpansionCards = 2;
inline constexpr std::size_t kCardNodes = 4;

// The first node of a card; nodes are counted from 0.
constexpr std::size_t FirstNodeOf(std::size_t card) { return card * kCardNodes; }

enum class AddressResult {
  kAddressed,
  kRefused,         // the node did not take the first step; the second was not sent
  kNotTransported,  // the first step's exchange failed; the second was not sent
};

// Told of a node as soon as it is known, before the next one is addressed.
using OnNodeAddressed = std::function<void(std::size_t node, AddressResult result)>;

// Gives the active nodes of the card their addresses, each in two steps, and goes on after one that
// fails. Returns whether none failed, so a card without an active node is addressed at once. The
// board carries no other card. Sends no restart.
bool AddressCard(HidLibrary& library, DeviceRecord& board, std::size_t card,
                 const NodeRecords& nodes, const OnNodeAddressed& tell);

}  // namespace quillon
