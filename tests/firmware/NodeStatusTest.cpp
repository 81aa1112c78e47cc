// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "firmware/NodeStatus.h"
#include "testing/link/TranscriptLibrary.h"

namespace quillon {
namespace {

using testing::TranscriptLibrary;
using enum NodeUpdateStatus;

const std::string kQuery = "write 0 -> 0 : 00 00 00 00 1d *\n";

// As required, older, without firmware, absent, absent as well; and the last one is newer than is
// known and ends the answer.
const std::string kAnswer = kQuery +
                            "read 0 -> 0 : 1d 01 01 01 02 01 30 01 01 02 01 2f 01 ff ff ff ff "
                            "00 01 02 01 30 02 01 02 01 30 00 ff ff ff ff 00 ff ff ff ff "
                            "00 ff ff ff ff 00 ff ff ff ff 00 ff ff ff ff 00 ff ff ff ff "
                            "01 12 34 56 78 77 77 77 *\n";

const NodeRecords kAnswered = [] {
  NodeRecords nodes{{{1, 0x0102, 0x0130, kOk}, {1, 0x0102, 0x012F}, NodeRecord{.status = 1}}};
  nodes[3] = {0, 0x0102, 0x0130, kOk};
  nodes[4] = {2, 0x0102, 0x0130, kOk};
  nodes[11] = {1, 0x1234, 0x5678, kIncompatible};
  return nodes;
}();

// A table with two node boards, of which the first is current.
struct TwoBoards {
  TwoBoards() {
    table.Append(2, 1);
    for (const std::uint32_t i : {0U, 1U}) table.Record(i).product_id = i == 0 ? 0x0800 : 0x1200;
  }
  DeviceTable table;
};

TEST(NodeStatus, FillsTheTableWithWhatTheCurrentBoardAnswers) {
  TwoBoards boards;
  TranscriptLibrary library(kAnswer);
  EXPECT_EQ(QueryNodeStatus(library, boards.table), NodeStatusAnswer::kWithEeprom);
  EXPECT_EQ(boards.table.Nodes(0), kAnswered);
  EXPECT_EQ(boards.table.CheckedNodes(), NodeSelection("100000000111"));
  EXPECT_EQ(boards.table.Nodes(1), NodeRecords());

  boards.table.SetCurrent(1);
  EXPECT_EQ(OnlineNodeVersion(), 0xFFFF) << "nobody has looked";
  SetOnlineNodeVersion(0x0130);
  library.Expect("write 1 -> 0 : 00 00 00 00 1d *\nread 1 -> 0 : 1d 00 01 01 02 01 2f *");
  EXPECT_EQ(QueryNodeStatus(library, boards.table), NodeStatusAnswer::kWithoutEeprom);
  SetOnlineNodeVersion(0xFFFF);
  EXPECT_EQ(boards.table.Nodes(1)[0], (NodeRecord{1, 0x0102, 0x012F, kUpdateAvailableOnline}));
  EXPECT_EQ(boards.table.Nodes(0), kAnswered) << "each board keeps its own";
}

TEST(NodeStatus, KeepsWhatItHasWithoutAValidAnswer) {
  for (const char* exchange :
       {"write 0 -> 1 : 00 00 00 00 1d *", "write 0 -> 0 : 00 00 00 00 1d *\nread 0 -> 4",
        "write 0 -> 0 : 00 00 00 00 1d *\nread 0 -> 0 : 1c 01 01 01 02 01 20 *"}) {
    TwoBoards boards;
    boards.table.SetCurrentNodes(kAnswered);
    boards.table.CheckNode(0, false);
    TranscriptLibrary library(exchange);
    EXPECT_EQ(QueryNodeStatus(library, boards.table), NodeStatusAnswer::kNone) << exchange;
    EXPECT_EQ(boards.table.CurrentNodes(), kAnswered) << exchange;
    EXPECT_FALSE(boards.table.CheckedNodes()[0]) << exchange;
  }
}

TEST(NodeStatus, JudgesAnActiveNodeByWhatIsRequiredAndWhatIsOnline) {
  const struct {
    VersionWord flash, online;
    const char* status;
    bool needs_update;
  } cases[] = {
      {0x0130, 0xFFFF, "Ok", false},
      {0x013F, 0xFFFF, "Ok", false},
      {0x0130, 0x0130, "Ok", false},
      {0x012F, 0xFFFF, "Update Required", true},
      {0x0000, 0xFFFF, "Update Required", true},
      {0xFFFF, 0xFFFF, "Update Required", true},
      {0xFFFF, 0x0140, "Update Required", true},
      {0x0140, 0xFFFF, "Incompatible", true},
      {0x0140, 0x013F, "Incompatible", true},
      {0x0130, 0x0131, "Update Available Online", false},
      {0x0140, 0x0141, "Update Available Online", false},
      {0x0120, 0x0121, "Update Available Online", false},  // intended, though it is too old
      {0x0120, 0x0120, "Update Required", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::Message() << std::hex << c.flash << " with " << c.online << " online");
    NodeRecord node{.status = 1, .flash_version = c.flash};
    node.firmware = UpdateStatusOf(node, 0x0130, c.online);
    EXPECT_EQ(RowTextsOf(node, 0).update_status, c.status);
    EXPECT_EQ(node.UpdateRequired(), c.needs_update);
    node.status = 0;
    EXPECT_EQ(RowTextsOf(node, 0).update_status, "");
    EXPECT_TRUE(node.UpdateRequired());
  }
}

}  // namespace
}  // namespace quillon
