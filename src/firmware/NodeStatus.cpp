// SPDX-License-Identifier: MIT
#include "firmware/NodeStatus.h"

#include <algorithm>
#include <span>

#include "devlink/Exchange.h"
#include "devlink/Products.h"
#include "kvusb/HidPacket.h"

namespace quillon {
namespace {

constexpr std::uint8_t kNodeStatusQuery = 29;

// An answer:
//
//    0      1        2 .. 6   7 .. 11      57 .. 61
//   +------+--------+--------+--------+---+---------+
//   | echo | EEPROM | node 0 | node 1 |...| node 11 |
//   +------+--------+--------+--------+---+---------+
//
// and a node in it, with the versions' high bytes first:
//
//    0        1 2              3 4
//   +--------+----------------+---------------+
//   | status | loader version | flash version |
//   +--------+----------------+---------------+
constexpr std::size_t kEepromByte = 1, kFirstNodeByte = 2, kNodeBytes = 5;
static_assert(kFirstNodeByte + kBoardNodes * kNodeBytes < KVUSB_PACKET_BYTES);

VersionWord& TheOnlineVersion() {
  static VersionWord version = NodeRecord::kNoVersion;
  return version;
}

VersionWord WordOf(std::uint8_t high, std::uint8_t low) {
  return static_cast<VersionWord>(high << 8 | low);
}

NodeRecord RecordOf(std::span<const std::uint8_t> bytes) {
  return {.status = bytes[0],
          .loader_version = WordOf(bytes[1], bytes[2]),
          .flash_version = WordOf(bytes[3], bytes[4])};
}

std::string TextOrNone(VersionWord version) {
  return version == NodeRecord::kNoVersion ? "N/A" : VersionText(version);
}

std::string TextOf(NodeUpdateStatus status) {
  switch (status) {
    case NodeUpdateStatus::kOk:
      return "Ok";
    case NodeUpdateStatus::kUpdateRequired:
      return "Update Required";
    case NodeUpdateStatus::kUpdateAvailableOnline:
      return "Update Available Online";
    case NodeUpdateStatus::kIncompatible:
      return "Incompatible";
  }
  return {};
}

std::string NameOf(std::size_t index) { return std::to_string(index + 1); }

}  // namespace

VersionWord OnlineNodeVersion() { return TheOnlineVersion(); }

void SetOnlineNodeVersion(VersionWord version) { TheOnlineVersion() = version; }

NodeStatusAnswer QueryNodeStatus(HidLibrary& library, DeviceTable& table) {
  HidPacket packet{};
  packet[kCommandByte] = kNodeStatusQuery;
  const bool exchanged = SendPacket(library, table.CurrentRecord(), packet);
  if (!exchanged || packet[kEchoByte] != kNodeStatusQuery) return NodeStatusAnswer::kNone;

  const VersionWord required = ProductOf(table.CurrentRecord().product_id).required.node;
  const std::span<const std::uint8_t> answer(packet);
  NodeRecords nodes;
  std::size_t at = kFirstNodeByte;
  for (NodeRecord& node : nodes) {
    node = RecordOf(answer.subspan(at, kNodeBytes));
    node.firmware = UpdateStatusOf(node, required, OnlineNodeVersion());
    at += kNodeBytes;
  }
  table.SetCurrentNodes(nodes);
  return packet[kEepromByte] != 0 ? NodeStatusAnswer::kWithEeprom
                                  : NodeStatusAnswer::kWithoutEeprom;
}

NodeStatusAnswer QueryNodesUnlessRestarting(HidLibrary& library, DeviceTable& table) {
  return table.IsRestarting(table.Current()) ? NodeStatusAnswer::kNone
                                             : QueryNodeStatus(library, table);
}

NodeUpdateStatus UpdateStatusOf(const NodeRecord& node, VersionWord required, VersionWord online) {
  const VersionWord flash = node.flash_version;
  if (flash == NodeRecord::kNoVersion) return NodeUpdateStatus::kUpdateRequired;
  if (online != NodeRecord::kNoVersion && online > flash) {
    return NodeUpdateStatus::kUpdateAvailableOnline;
  }
  if (ReleaseOf(flash) == ReleaseOf(required)) return NodeUpdateStatus::kOk;
  return ReleaseOf(flash) < ReleaseOf(required) ? NodeUpdateStatus::kUpdateRequired
                                                : NodeUpdateStatus::kIncompatible;
}

bool AnyNodeNeedsUpdate(const NodeRecords& nodes) {
  return std::ranges::any_of(
      nodes, [](const NodeRecord& node) { return node.IsActive() && node.UpdateRequired(); });
}

NodeRowTexts RowTextsOf(const NodeRecord& node, std::size_t index) {
  NodeRowTexts texts;
  texts.node = "Node " + NameOf(index);
  texts.status = node.IsActive() ? "Active" : "N/A";
  if (!node.IsActive()) return texts;
  texts.loader_version = TextOrNone(node.loader_version);
  texts.flash_version = TextOrNone(node.flash_version);
  texts.update_status = TextOf(node.firmware);
  return texts;
}

std::string NodeReport(const NodeRecord& node, std::size_t index) {
  std::string text = "Node : " + NameOf(index) + "\r\n\r\n" +
                     "  Node Loader Version : " + TextOrNone(node.loader_version) + "\r\n" +
                     "  Node Flash Version : " + TextOrNone(node.flash_version) + "\r\n";
  if (node.UpdateRequired()) text += "\r\n  WARNING: NODE Firmware update required!\r\n";
  return text;
}

}  // namespace quillon
