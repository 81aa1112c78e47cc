// SPDX-License-Identifier: MIT
#pragma once

#include "firmware/NodeStatus.h"
#include "testing/pages/SimProgram.h"

namespace quillon::testing {

// The simulated boards, of which a node I/O system is current and has told its nodes. The default
// rig has two: 001 with nodes 1 to 6, and 002, whose node 2 needs an update.
struct NodeBoards : SimProgram {
  NodeBoards() : SimProgram(0x0800) {
    for (std::uint32_t i = Table().Count(); i-- > 0;) {
      if (Table().Record(i).product_id != 0x0800) continue;
      Table().SetCurrent(i);
      QueryNodeStatus(library, Table());
    }
  }

  DeviceTable& Table() { return fixture.link.table; }
  // Makes the other one of the two current.
  void ChooseSecond() {
    for (std::uint32_t i = 0; i < Table().Count(); ++i) {
      if (Table().Record(i).product_id == 0x0800) Table().SetCurrent(i);
    }
  }
  // Settings of a node of the first board, counted from 0, by address.
  sim::NodeMemory& Memory(std::size_t node) {
    return bus.Find("nodes-1")->State().nodes[node].memory;
  }
};

}  // namespace quillon::testing
