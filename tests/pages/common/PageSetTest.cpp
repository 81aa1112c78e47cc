// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "pages/common/CPageSet.h"
#include "sim/Bus.h"
#include "testing/pages/PageFixture.h"

namespace quillon::testing {
namespace {

// The node I/O system with something in each tab.
class NodeSet : public CPageSet {
 public:
  explicit NodeSet(PageContext context) : CPageSet(context, BoardFamily::kNodeSystem, nullptr) {
    for (const char* const title : {"Nodes", "Cards", "Ports"})
      AddTab("tab-node", title, [] { return new QWidget; });
  }

  std::string Enabled() const {
    std::string tabs;
    for (int tab = 0; tab < count(); ++tab) {
      if (isTabEnabled(tab)) tabs += std::to_string(tab);
      EXPECT_NE(isTabEnabled(tab) && tab > 0, !tabToolTip(tab).isEmpty()) << tab;
    }
    return tabs;
  }
};

}  // namespace

TEST(PageSet, EnablesTheTabsOfANodeSystemByItsModeItsReleaseAndItsNodes) {
  const struct {
    const char *name, *fields, *enabled;
  } cases[]{
      {"suits", R"("firmware": "1.13", "nodes": [{"node": 1, "flash": "1.39"}])", "03"},
      {"no nodes", R"("firmware": "1.10")", "03"},
      {"an old node", R"("firmware": "1.10", "nodes": [{"node": 2, "flash": "1.29"},
                         {"node": 1, "flash": "1.30"}])",
       "0"},
      {"a node without firmware", R"("firmware": "1.10", "nodes": [{"node": 12, "flash": "none"}])",
       "0"},
      {"an old board", R"("firmware": "1.00", "nodes": [{"node": 1, "flash": "1.30"}])", "0"},
      {"in its loader", R"("firmware": "1.00", "mode": "flash",
                           "nodes": [{"node": 1, "flash": "1.20"}])",
       "012"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    sim::Bus bus(
        std::get<sim::Rig>(sim::ParseRig(R"({"boards": [{"id": "b", "product": "0x0800", )" +
                                         std::string(c.fields) + "}]}")),
        {.latency = {}});
    PageFixture fixture(bus);
    fixture.Detect();
    NodeSet pages(fixture.Context());
    pages.ShowBoard();
    EXPECT_EQ(pages.Enabled(), c.enabled) << "from a click";
    pages.EnablePages(false, false);
    const auto hold = fixture.link.gate.Enter();
    pages.ShowBoard();
    EXPECT_EQ(pages.Enabled(), c.enabled) << "in a detection";
  }
}

}  // namespace quillon::testing
