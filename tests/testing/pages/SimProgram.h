// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <utility>

#include "sim/Bus.h"
#include "testing/link/FaultyLibrary.h"
#include "testing/pages/PageFixture.h"

namespace quillon::testing {

// One run of the program's lower half over the simulated boards of the default rig, of which the
// first with the product id is current. Made anew over the same state folder it is the program
// after a restart.
struct SimProgram {
  explicit SimProgram(std::uint16_t product_id, sim::BusOptions options = {.latency = {}})
      : bus(sim::DefaultRig(), std::move(options)), library(bus), fixture(library) {
    fixture.Detect();
    DeviceTable& table = fixture.link.table;
    for (std::uint32_t i = table.Count(); i-- > 0;) {
      if (table.Record(i).product_id == product_id) table.SetCurrent(i);
    }
    EXPECT_EQ(table.CurrentRecord().product_id, product_id);
  }

  sim::Bus bus;
  FaultyLibrary library;
  PageFixture fixture;
};

}  // namespace quillon::testing
