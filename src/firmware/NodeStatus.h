// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "devlink/DeviceTable.h"
#include "devlink/NodeRecord.h"
#include "firmware/VersionWord.h"
#include "kvusb/HidLibrary.h"

// What the board of a node I/O system says of its nodes, and what follows from it.
namespace quillon {

// The newest firmware of nodes that is published online; NodeRecord::kNoVersion until it is known.
// The program knows one at a time, whichever board it was looked up for.
VersionWord OnlineNodeVersion();
void SetOnlineNodeVersion(VersionWord version);

enum class NodeStatusAnswer {
  kNone,  // no answer, or one to something else; the table keeps what it has
  kWithEeprom,
  kWithoutEeprom,
};

// Asks the table's current board for its nodes and keeps them in the table, each judged by
// UpdateStatusOf(); those that are active are checked.
NodeStatusAnswer QueryNodeStatus(HidLibrary& library, DeviceTable& table);

// The same for what happens by itself: a board that was told to restart counts as one without an
// answer, because it would keep everybody waiting.
NodeStatusAnswer QueryNodesUnlessRestarting(HidLibrary& library, DeviceTable& table);

// A newer firmware online outweighs that the node's release is older than the required one.
NodeUpdateStatus UpdateStatusOf(const NodeRecord& node, VersionWord required, VersionWord online);

// Whether the record of any active node says that it needs an update.
bool AnyNodeNeedsUpdate(const NodeRecords& nodes);

// The texts of a node's row in the list of nodes; those on its firmware are empty for an absent
// node. `index` counts from 0.
struct NodeRowTexts {
  std::string node, status, loader_version, flash_version, update_status;
};

NodeRowTexts RowTextsOf(const NodeRecord& node, std::size_t index);

// The report of the node's own page. `index` counts from 0.
std::string NodeReport(const NodeRecord& node, std::size_t index);

}  // namespace quillon
