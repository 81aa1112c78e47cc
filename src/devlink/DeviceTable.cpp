// SPDX-License-Identifier: MIT
#include "devlink/DeviceTable.h"

#include <algorithm>
#include <utility>

namespace quillon {

void DeviceTable::SetCurrent(std::uint32_t index) {
  if (index < count_) current_ = index;
}

const Problem& DeviceTable::ProblemOf(std::uint32_t index) const {
  static const Problem kNone;
  const auto found = problems_.find(index);
  return found == problems_.end() ? kNone : found->second;
}

void DeviceTable::SetProblem(std::uint32_t index, Problem problem) {
  problems_.erase(index);
  if (problem.kind != KVUSB_PROBLEM_NONE) problems_.emplace(index, std::move(problem));
}

const BoardNodes& DeviceTable::NodesOf(std::uint32_t index) const {
  static const BoardNodes kAbsent;
  const auto found = nodes_.find(index);
  return found == nodes_.end() ? kAbsent : found->second;
}

void DeviceTable::SetCurrentNodes(const NodeRecords& nodes) {
  BoardNodes& board = nodes_[current_];
  board = {.records = nodes, .known = true, .checked = {}};
  for (std::size_t i = 0; i < nodes.size(); ++i) board.checked.set(i, nodes[i].IsActive());
}

void DeviceTable::Clear() {
  problems_.clear();
  nodes_.clear();
  restarting_.clear();
  count_ = 0;
  current_ = 0;
  types_[0] = 0;
  records_[0].product_id = 0;
}

std::uint32_t DeviceTable::Append(std::uint32_t found, std::uint32_t type) {
  const std::uint32_t taken = std::min(found, kRoom - count_);
  for (std::uint32_t i = count_; i < count_ + taken; ++i) {
    types_[i] = type;
    records_[i].queried_version = 0;
    records_[i].firmware_present = 1;
    nodes_.erase(i);
  }
  count_ += taken;
  return taken;
}

}  // namespace quillon
