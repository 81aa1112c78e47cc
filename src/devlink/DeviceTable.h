// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <vector>

#include "devlink/NodeRecord.h"
#include "kvusb/Problem.h"
#include "kvusb/kvusb.h"

namespace quillon {

// The boards found by the last detection, in the order in which they were found, and which of them
// is current: the one that all pages talk to. A HID library writes the records itself and is not
// told how many fit, so the table ends with a margin that is never used for boards.
class DeviceTable {
 public:
  static constexpr std::uint32_t kRoom = 1024;
  static constexpr std::uint32_t kMargin = KVUSB_MOST_BOARDS;

  DeviceTable() : records_(kRoom + kMargin), types_(kRoom) {}

  std::uint32_t Count() const { return count_; }
  bool IsEmpty() const { return count_ == 0; }

  // Index of the selected board; 0 after a detection, and without boards.
  std::uint32_t Current() const { return current_; }
  // An index that no board has is ignored.
  void SetCurrent(std::uint32_t index);

  // `index` is below kRoom; a record past the count is blank or left over from a former board.
  DeviceRecord& Record(std::uint32_t index) { return records_[index]; }
  const DeviceRecord& Record(std::uint32_t index) const { return records_[index]; }
  DeviceRecord& CurrentRecord() { return records_[current_]; }
  const DeviceRecord& CurrentRecord() const { return records_[current_]; }
  std::uint32_t Type(std::uint32_t index) const { return types_[index]; }
  std::uint32_t CurrentType() const { return types_[current_]; }

  // What kept a listed board from working when it was detected; KVUSB_PROBLEM_NONE for most.
  const Problem& ProblemOf(std::uint32_t index) const;
  void SetProblem(std::uint32_t index, Problem problem);

  // What a board last said of its nodes; all of them absent until it did.
  const NodeRecords& Nodes(std::uint32_t index) const { return NodesOf(index).records; }
  NodeRecords& Nodes(std::uint32_t index) { return nodes_[index].records; }
  const NodeRecords& CurrentNodes() const { return Nodes(current_); }
  NodeRecords& CurrentNodes() { return Nodes(current_); }
  // Takes what the current board has said.
  void SetCurrentNodes(const NodeRecords& nodes);
  bool AreCurrentNodesKnown() const { return NodesOf(current_).known; }
  const NodeSelection& CheckedNodes() const { return NodesOf(current_).checked; }
  void CheckNode(std::size_t node, bool checked) { nodes_[current_].checked.set(node, checked); }

  // Whether a board was told to restart, and so leaves the bus. Until the next detection finds it
  // again, it answers nothing.
  bool IsRestarting(std::uint32_t index) const { return restarting_.contains(index); }
  void SetCurrentRestarting() { restarting_.insert(current_); }

  // All boards found, for closing them.
  std::span<DeviceRecord> Boards() { return {records_.data(), count_}; }
  // Where the next boards go: room and margin.
  std::span<DeviceRecord> Free() { return std::span(records_).subspan(count_); }

  // Forgets all boards.
  void Clear();

  // Takes up to `found` boards of one type from Free() and returns how many fitted. Sets their
  // queried version and firmware flag to those of a board that has not answered the identity query,
  // and their nodes to absent ones.
  std::uint32_t Append(std::uint32_t found, std::uint32_t type);

 private:
  const BoardNodes& NodesOf(std::uint32_t index) const;

  std::vector<DeviceRecord> records_;
  std::vector<std::uint32_t> types_;
  std::map<std::uint32_t, Problem> problems_;
  std::map<std::uint32_t, BoardNodes> nodes_;
  std::set<std::uint32_t> restarting_;
  std::uint32_t count_ = 0;
  std::uint32_t current_ = 0;
};

}  // namespace quillon
