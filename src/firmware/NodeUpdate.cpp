// SPDX-License-Identifier: MIT
#include "firmware/NodeUpdate.h"

#include <algorithm>
#include <string>

#include "devlink/Exchange.h"
#include "devlink/Products.h"
#include "firmware/NodeCommand.h"
#include "firmware/NodeStatus.h"

namespace quillon {
namespace {

constexpr std::uint8_t kFinish = 1, kErase = 8;

// Places in a record command and in a finish, beside those of every node command.
constexpr std::size_t kLowByte = 2, kHighByte = 3;

// A record has room for more bytes than the packet has behind the header; a reader of files refuses
// records that need them.
static_assert(kNodeDataByte + KvxRecord::kMostNodeBytes == KVUSB_PACKET_BYTES);

// The word for a status in byte 0 of an answer. Any other value is no error.
std::string_view ErrorWord(std::uint8_t status) {
  switch (status) {
    case 2:
      return "CMD_FAIL";
    case 4:
      return "FLASH_FAIL";
    case 5:
      return "CONFIG_FAIL";
    case 6:
      return "EEPROM_FAIL";
    case 10:
      return "NODE_FAIL";
    case 11:
      return "CRC_FAIL";
    default:
      return {};
  }
}

constexpr std::string_view kNoAnswer = "Timeout";

int PercentOf(std::size_t index, std::size_t count) {
  return static_cast<int>(index * 100 / count) + 1;
}

NodeRunResult ResultOf(NodeEnd end, bool stop) {
  if (end == NodeEnd::kFailed) return NodeRunResult::kFailed;
  return stop ? NodeRunResult::kStopped : NodeRunResult::kAborted;
}

}  // namespace

NodeUpdate::NodeUpdate(HidLibrary& library, DeviceRecord& board, NodeRecords& nodes,
                       const KvxImage& image, const NodeChoice& choice,
                       NodeUpdateObserver& observer)
    : library_(library),
      board_(board),
      nodes_(nodes),
      image_(image),
      choice_(choice),
      observer_(observer),
      version_(image.node_version.value_or(0)) {}

NodeRunResult NodeUpdate::Run() {
  if (!image_.IsForNodes()) return NodeRunResult::kNotForNodes;
  SetOnlineNodeVersion(NodeRecord::kNoVersion);
  for (std::size_t node = 0; node < nodes_.size(); ++node) {
    if (observer_.StopRequested()) return NodeRunResult::kStopped;
    if (!choice_.checked[node]) continue;
    observer_.ForgetAbort();
    if (IsUpToDate(nodes_[node]) && !choice_.force) {
      Ended(node, NodeEnd::kSkipped, "No Update Required!");
      continue;
    }
    const NodeEnd end = Program(node);
    if (end != NodeEnd::kCompleted) return ResultOf(end, observer_.StopRequested());
  }
  return observer_.StopRequested() ? NodeRunResult::kStopped : NodeRunResult::kCompleted;
}

// Intended: a node of another release than the required one is programmed even if it is newer.
bool NodeUpdate::IsUpToDate(const NodeRecord& node) const {
  return !node.UpdateRequired() && version_ <= node.flash_version;
}

NodeEnd NodeUpdate::Program(std::size_t node) {
  HidPacket erase = NodeCommandOf(kErase, node);
  // Intended: nobody looks at the status, and a failed exchange counts only where no record follows
  // that shows whether the node takes it.
  const bool erased = SendPacket(library_, board_, erase);
  observer_.OnBegun(node);
  const NodeEnd end = SendRecords(node, erased);
  // Whatever its version was. Else a node of which a forced update failed would be skipped next
  // time.
  if (end != NodeEnd::kCompleted) nodes_[node].firmware = NodeUpdateStatus::kUpdateRequired;
  if (end == NodeEnd::kAborted) return Ended(node, end, "Update Aborted");
  if (end == NodeEnd::kFailed) return Ended(node, end, std::string(word_) + " - Update Failed");
  Finish(node);
  return Ended(node, end, "Update Complete");
}

NodeEnd NodeUpdate::SendRecords(std::size_t node, bool erased) {
  const std::size_t count = image_.records.size();
  word_ = kNoAnswer;
  int shown = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (observer_.AbortRequested() || observer_.StopRequested()) return NodeEnd::kAborted;
    const bool sent = SendRecord(node, image_.records[i]);
    const int percent = PercentOf(i, count);
    if (percent != shown) observer_.OnProgress(node, percent);
    shown = percent;
    if (!sent) return NodeEnd::kFailed;
    observer_.Pump();
  }
  return count == 0 && !erased ? NodeEnd::kFailed : NodeEnd::kCompleted;
}

bool NodeUpdate::SendRecord(std::size_t node, const KvxRecord& record) {
  HidPacket packet = NodeCommandOf(record.type, node);
  packet[kLengthByte] = record.length;
  packet[kLowByte] = record.address_low;
  packet[kHighByte] = record.address_high;
  std::copy_n(record.data.begin(), KvxRecord::kMostNodeBytes, packet.begin() + kNodeDataByte);
  const bool exchanged = SendPacket(library_, board_, packet);
  const std::string_view error = ErrorWord(packet[kEchoByte]);
  word_ = error.empty() ? kNoAnswer : error;
  return exchanged && error.empty();
}

void NodeUpdate::Finish(std::size_t node) {
  HidPacket packet = NodeCommandOf(kFinish, node);
  packet[kLowByte] = static_cast<std::uint8_t>(version_ & 0xFF);
  packet[kHighByte] = static_cast<std::uint8_t>(version_ >> 8);
  // The answer is left alone on purpose: the next status query shows what the node made of it.
  static_cast<void>(SendPacket(library_, board_, packet));
  NodeRecord& record = nodes_[node];
  record.flash_version = version_;
  record.firmware =
      UpdateStatusOf(record, ProductOf(board_.product_id).required.node, OnlineNodeVersion());
  observer_.OnVersion(node, version_);
}

NodeEnd NodeUpdate::Ended(std::size_t node, NodeEnd end, std::string_view text) {
  observer_.OnEnded(node, end, text);
  return end;
}

}  // namespace quillon
