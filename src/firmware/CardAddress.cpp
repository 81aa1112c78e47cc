// SPDX-License-Identifier: MIT
#include "firmware/CardAddress.h"

#include "devlink/Exchange.h"
#include "firmware/NodeCommand.h"

namespace quillon {
namespace {

constexpr std::uint8_t kFirstStep = 7, kSecondStep = 9;

static_assert(FirstNodeOf(kExpansionCards) + kCardNodes == kBoardNodes);

AddressResult AddressNode(HidLibrary& library, DeviceRecord& board, std::size_t node) {
  HidPacket packet = NodeCommandOf(kFirstStep, node);
  if (!SendPacket(library, board, packet)) return AddressResult::kNotTransported;
  if (packet[kEchoByte] != kFirstStep) return AddressResult::kRefused;
  packet = NodeCommandOf(kSecondStep, node);
  // Intended: the first step alone decides, and nobody looks at how the second one went.
  static_cast<void>(SendPacket(library, board, packet));
  return AddressResult::kAddressed;
}

}  // namespace

bool AddressCard(HidLibrary& library, DeviceRecord& board, std::size_t card,
                 const NodeRecords& nodes, const OnNodeAddressed& tell) {
  bool all = true;
  for (std::size_t node = FirstNodeOf(card); node < FirstNodeOf(card) + kCardNodes; ++node) {
    if (!nodes[node].IsActive()) continue;
    const AddressResult result = AddressNode(library, board, node);
    all = all && result == AddressResult::kAddressed;
    tell(node, result);
  }
  return all;
}

}  // namespace quillon
