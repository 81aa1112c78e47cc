// SPDX-License-Identifier: MIT
#include "firmware/NodeFixture.h"
#include "firmware/NodeStatus.h"
#include "testing/link/TranscriptLibrary.h"

namespace quillon {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TranscriptLibrary;

KvxImage ImageFor(VersionWord version, std::vector<KvxRecord> records = {}) {
  KvxImage image;
  image.device_id = 0x0800;
  image.node_version = version;
  image.records = std::move(records);
  return image;
}

DeviceRecord NodeBoard() {
  DeviceRecord board{};
  board.product_id = 0x0800;
  return board;
}

// The answers carry other bytes, of which none may come back in the next request.
TEST(NodeUpdate, SendsEraseRecordsAndFinishToEachNode) {
  TranscriptLibrary library(R"(
    write 0 -> 0 : 00 00 00 00 1c 00 08 00 *
    read 0 -> 0 : 02 e1 e2 e3 e4 e5 e6 e7 e8 e9 *
    write 0 -> 0 : 00 03 34 12 1c 00 00 00 00 aa bb cc *
    read 0 -> 0 : 00 a1 a2 a3 a4 a5 a6 a7 a8 a9 *
    write 0 -> 0 : 00 38 3b 20 1c 00 42 00 00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f 20 21 22 23 24 25 26 27 28 29 2a 2b 2c 2d 2e 2f 30 31 32 33 34 35 36 37 38
    read 0 -> 0 : 03 b1 b2 b3 b4 b5 b6 b7 b8 b9 *
    write 0 -> 0 : 00 00 31 01 1c 00 01 00 *
    read 0 -> 0 : 05 *
    write 0 -> 0 : 00 00 00 00 1c 00 08 0b *
    read 0 -> 4
    write 0 -> 0 : 00 03 34 12 1c 00 00 0b 00 aa bb cc *
    read 0 -> 0 : 0a *)");
  std::vector<std::uint8_t> full;
  for (std::uint8_t i = 1; i <= 56; ++i) full.push_back(i);
  const KvxImage image =
      ImageFor(0x0131, {RecordAt(0x1234, {0xAA, 0xBB, 0xCC}), RecordAt(0x203B, full, 0x42)});
  DeviceRecord board = NodeBoard();
  NodeRecords nodes;
  nodes[0] = nodes[11] = {1, 0x0100, 0x0120, true};
  NodeChoice choice;
  choice.checked[0] = choice.checked[11] = true;
  NodeLog log;
  EXPECT_EQ(NodeUpdate(library, board, nodes, image, choice, log).Run(), NodeRunResult::kFailed);
  EXPECT_THAT(log.events, ElementsAre("0 begun", "0 1 %", "0 51 %", "0 version 1.31",
                                      "0 completed: Update Complete", "11 begun", "11 1 %",
                                      "11 failed: NODE_FAIL - Update Failed"));
  EXPECT_EQ(nodes[0], (NodeRecord{1, 0x0100, 0x0131, false}));
  EXPECT_EQ(nodes[11], (NodeRecord{1, 0x0100, 0x0120, true}));
}

TEST(NodeUpdate, WithoutRecordsAFailedEraseIsAFailure) {
  const std::pair<const char*, const char*> cases[] = {
      {"write 0 -> 0 : 00 00 00 00 1c 00 08 02 *\nread 0 -> 0 : 02 *\n"
       "write 0 -> 0 : 00 00 30 01 1c 00 01 02 *\nread 0 -> 4",
       "2 completed: Update Complete"},
      {"write 0 -> 0 : 00 00 00 00 1c 00 08 02 *\nread 0 -> 4",
       "2 failed: Timeout - Update Failed"},
      {"write 0 -> 1 : 00 00 00 00 1c 00 08 02 *", "2 failed: Timeout - Update Failed"},
  };
  for (const auto& [transcript, end] : cases) {
    TranscriptLibrary library(transcript);
    DeviceRecord board = NodeBoard();
    NodeRecords nodes;
    NodeChoice choice;
    choice.checked[2] = true;
    NodeLog log;
    const KvxImage image = ImageFor(0x0130);
    NodeUpdate(library, board, nodes, image, choice, log).Run();
    EXPECT_EQ(log.events.front(), "2 begun");
    EXPECT_EQ(log.events.back(), end);
  }
}

TEST(NodeUpdate, SkipsOnlyWhatNeedsNoUpdate) {
  const struct {
    const char* name;
    bool update_required;
    VersionWord flash;
    bool force, skipped;
  } cases[] = {
      {"the same", false, 0x0131, false, true},
      {"newer", false, 0x0132, false, true},
      {"older, of the same release", false, 0x0130, false, false},
      {"too old", true, 0x0120, false, false},
      {"incompatible, though newer", true, 0x0140, false, false},
      {"without firmware", true, 0xFFFF, false, false},
      {"the same, forced", false, 0x0131, true, false},
  };
  for (const auto& c : cases) {
    TranscriptLibrary library(c.skipped ? "" : "write 0 -> 1 : 00 00 00 00 1c 00 08 03 *");
    DeviceRecord board = NodeBoard();
    NodeRecords nodes;
    nodes[3] = {1, 0x0100, c.flash, c.update_required};
    const NodeChoice choice{.checked = {false, false, false, true}, .force = c.force};
    NodeLog log;
    const KvxImage image = ImageFor(0x0131);
    EXPECT_EQ(NodeUpdate(library, board, nodes, image, choice, log).Run(),
              c.skipped ? NodeRunResult::kCompleted : NodeRunResult::kFailed)
        << c.name;
    EXPECT_EQ(log.events.front(), c.skipped ? "3 skipped: No Update Required!" : "3 begun")
        << c.name;
    EXPECT_EQ(nodes[3].flash_version, c.flash) << c.name;
  }
}

TEST(NodeUpdate, ARunWithoutNodesForgetsTheOnlineVersionOnly) {
  TranscriptLibrary library("");
  DeviceRecord board = NodeBoard();
  NodeRecords nodes;
  NodeLog log;
  SetOnlineNodeVersion(0x0200);
  const NodeChoice all{.checked = {true}, .force = true};
  const KvxImage core = ImageFor(0), image = ImageFor(0x0130);
  EXPECT_EQ(NodeUpdate(library, board, nodes, core, all, log).Run(), NodeRunResult::kNotForNodes);
  EXPECT_EQ(OnlineNodeVersion(), 0x0200) << "no run began";
  EXPECT_EQ(NodeUpdate(library, board, nodes, image, {}, log).Run(), NodeRunResult::kCompleted);
  EXPECT_EQ(OnlineNodeVersion(), 0xFFFF);
  EXPECT_THAT(log.events, IsEmpty());
}

TEST(NodeUpdate, ShowsEachPerCentOnce) {
  NodeFixture fixture(200);
  NodeLog log;
  EXPECT_EQ(fixture.Run(log), NodeRunResult::kCompleted);
  std::vector<std::string> expected{"0 begun"};
  for (int i = 1; i <= 100; ++i) expected.push_back("0 " + std::to_string(i) + " %");
  log.events.resize(expected.size());
  EXPECT_EQ(log.events, expected);
  EXPECT_EQ(log.pumped, 600);
}

// Node 4 needs no update; 0 and 11 get three records each, so events come after 1 to 6 of them.
TEST(NodeUpdate, ForgetsAnAbortThatCameTooLateButNeverAStop) {
  struct Case {
    int after;
    bool stop;
    NodeRunResult result;
    std::vector<std::string> ends;
  };
  const std::string done0 = "0 completed: Update Complete",
                    skipped4 = "4 skipped: No Update Required!";
  const std::string done11 = "11 completed: Update Complete";
  using enum NodeRunResult;
  const Case cases[] = {
      {1, false, kAborted, {"0 aborted: Update Aborted"}},
      {2, false, kAborted, {"0 aborted: Update Aborted"}},
      {3, false, kCompleted, {done0, skipped4, done11}},
      {4, false, kAborted, {done0, skipped4, "11 aborted: Update Aborted"}},
      {6, false, kCompleted, {done0, skipped4, done11}},
      {0, true, kStopped, {}},
      {1, true, kStopped, {"0 aborted: Update Aborted"}},
      {3, true, kStopped, {done0}},
      {5, true, kStopped, {done0, skipped4, "11 aborted: Update Aborted"}},
      {6, true, kStopped, {done0, skipped4, done11}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE((c.stop ? "stop after " : "abort after ") + std::to_string(c.after));
    NodeFixture fixture;
    fixture.nodes[4] = {1, 0x0100, 0x0131, false};
    NodeLog log;
    (c.stop ? log.stop_after : log.abort_after) = c.after;
    log.stop = c.stop && c.after == 0;
    EXPECT_EQ(fixture.Run(log), c.result);
    std::erase_if(log.events,
                  [](const std::string& event) { return event.find(": ") == std::string::npos; });
    EXPECT_EQ(log.events, c.ends);
    EXPECT_EQ(fixture.Has(0), c.after >= 3);
    EXPECT_EQ(fixture.Has(11), c.after == 6 || c.result == kCompleted);
  }
}

TEST(NodeUpdate, AStopCountsAfterASkippedNodeToo) {
  NodeFixture fixture;
  fixture.nodes[4] = {1, 0x0100, 0x0131, false};
  NodeLog log;
  log.stop_at_skip = true;
  log.abort = true;  // of a run before
  EXPECT_EQ(fixture.Run(log), NodeRunResult::kStopped);
  EXPECT_EQ(log.events.back(), "4 skipped: No Update Required!");
  EXPECT_TRUE(fixture.Has(0));
  EXPECT_EQ(fixture.NodeAt(11).flash_version, 0x0120);
}

}  // namespace
}  // namespace quillon
