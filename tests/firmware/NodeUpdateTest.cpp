// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <numeric>

#include "firmware/NodeStatus.h"
#include "firmware/NodeUpdate.h"
#include "lab/sim/SimFixture.h"
#include "testing/link/FaultyLibrary.h"
#include "testing/link/TranscriptLibrary.h"

namespace quillon {
namespace {

using testing::TranscriptLibrary;
using enum NodeUpdateStatus;

// Keeps what a run tells, and wishes something at one of the events.
class NodeLog : public NodeUpdateObserver {
 public:
  void OnBegun(std::size_t node) override { Note(node, "begun"); }
  void OnProgress(std::size_t node, int percent) override { Note(node, std::to_string(percent)); }
  void OnVersion(std::size_t node, VersionWord version) override {
    Note(node, VersionText(version));
  }
  void OnEnded(std::size_t node, NodeEnd end, std::string_view text) override {
    Note(node, "SCAF"[static_cast<std::size_t>(end)] + (" " + std::string(text)));
    ends += events.back() + ";";
  }
  bool AbortRequested() override { return abort; }
  void ForgetAbort() override { abort = false; }
  bool StopRequested() override { return stop; }
  void Pump() override { Note(++pumped, "pumped"); }

  std::vector<std::string> events;
  std::string ends, abort_at, stop_at;
  std::size_t pumped = 0;
  bool abort = true;  // of a run before
  bool stop = false;

 private:
  void Note(std::size_t number, const std::string& what) {
    events.push_back(std::to_string(number) + " " + what);
    abort = abort || events.back() == abort_at;
    stop = stop || events.back() == stop_at;
  }
};

KvxImage ImageOf(VersionWord version, std::size_t records = 0) {
  KvxImage image;
  image.device_id = 0x0800;
  image.node_version = version;
  for (std::size_t i = 0; i < records; ++i)
    image.records.push_back({1, static_cast<std::uint8_t>(i), 0, 0, {0x77}});
  return image;
}

// A run over a board of which the first node is chosen.
struct OneNode {
  OneNode(VersionWord flash, bool update_required) {
    board.product_id = 0x0800;
    nodes[0] = {1, 0x0100, flash, update_required ? kUpdateRequired : kOk};
    choice.checked[0] = true;
  }
  NodeRunResult Run(HidLibrary& library, const KvxImage& image) {
    return NodeUpdate(library, board, nodes, image, choice, log).Run();
  }
  DeviceRecord board{};
  NodeRecords nodes;
  NodeChoice choice;
  NodeLog log;
};

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
  KvxImage image = ImageOf(0x0131);
  image.records = {{3, 0x34, 0x12, 0, {0xAA, 0xBB, 0xCC}}, {56, 0x3B, 0x20, 0x42, {}}};
  std::iota(image.records[1].data.begin(), image.records[1].data.end(), std::uint8_t{1});
  OneNode run(0x0120, true);
  run.nodes[11] = run.nodes[0];
  run.choice.checked[11] = true;
  EXPECT_EQ(run.Run(library, image), NodeRunResult::kFailed);
  EXPECT_THAT(run.log.events,
              ::testing::ElementsAre("0 begun", "0 1", "1 pumped", "0 51", "2 pumped", "0 1.31",
                                     "0 C Update Complete", "11 begun", "11 1",
                                     "11 F NODE_FAIL - Update Failed"));
  EXPECT_EQ(run.nodes[0], (NodeRecord{1, 0x0100, 0x0131, kOk}));
  EXPECT_EQ(run.nodes[11], (NodeRecord{1, 0x0100, 0x0120}));
}

TEST(NodeUpdate, SkipsWhatNeedsNoUpdateAndFailsWithoutRecordsAndErase) {
  const std::string erase = "write 0 -> 0 : 00 00 00 00 1c 00 08 00 *\n";
  const std::string erased = erase + "read 0 -> 0 : 02 *\nwrite 0 -> 1 : 00 00 31 01 1c 00 01 00 *";
  const std::string skipped = "0 S No Update Required!;", complete = "0 C Update Complete;";
  const struct {
    VersionWord flash;
    bool update_required, force;
    std::string transcript, ends;
  } cases[] = {
      {0x0131, false, false, "", skipped},
      {0x0132, false, false, "", skipped},
      {0x0130, false, false, erased, complete},
      {0x0140, true, false, erased, complete},  // intended: incompatible, though newer
      {0x0131, false, true, erased, complete},
      {0xFFFF, true, false, erase + "read 0 -> 4", "0 F Timeout - Update Failed;"},
  };
  for (const auto& c : cases) {
    TranscriptLibrary library(c.transcript);
    OneNode run(c.flash, c.update_required);
    run.choice.force = c.force;
    run.Run(library, ImageOf(0x0131));
    EXPECT_EQ(run.log.ends, c.ends) << c.flash;
  }
}

TEST(NodeUpdate, ForgetsTheOnlineVersionWhenItBegins) {
  TranscriptLibrary library("");
  OneNode run(0x0120, true);
  SetOnlineNodeVersion(0x0200);
  EXPECT_EQ(run.Run(library, ImageOf(0)), NodeRunResult::kNotForNodes);
  EXPECT_EQ(OnlineNodeVersion(), 0x0200) << "no run began";
  run.choice = {};
  EXPECT_EQ(run.Run(library, ImageOf(0x0131)), NodeRunResult::kCompleted);
  EXPECT_EQ(OnlineNodeVersion(), 0xFFFF);
  EXPECT_TRUE(run.log.events.empty());
}

// A simulated board whose nodes 0 and 11 have 1.20; node 4 between them needs no update.
struct ThreeNodes : OneNode {
  ThreeNodes() : OneNode(0x0120, true) {
    nodes[4] = {1, 0x0100, 0x0131, kOk};
    nodes[11] = nodes[0];
    choice.checked[4] = choice.checked[11] = true;
  }
  NodeRunResult Run(std::size_t records, NodeLog& told) {
    const KvxImage image = ImageOf(0x0131, records);
    return NodeUpdate(faulty, sim.record, nodes, image, choice, told).Run();
  }
  VersionWord On(std::size_t node) { return sim.TheBoard().State().nodes[node].flash_version; }

  sim::SimFixture sim{R"("product": "0x0800", "firmware": "1.10", "mode": "flash", "nodes": [
      {"node": 1, "flash": "1.20"}, {"node": 5, "flash": "1.31"}, {"node": 12, "flash": "1.20"}])"};
  testing::FaultyLibrary faulty{sim.bus};
};

TEST(NodeUpdate, ShowsEachPerCentOnce) {
  ThreeNodes run;
  run.Run(200, run.log);
  std::erase_if(run.log.events, [](const std::string& e) { return e.ends_with("pumped"); });
  for (std::size_t i = 1; i <= 100; ++i) {
    EXPECT_EQ(run.log.events[i], "0 " + std::to_string(i));
  }
}

TEST(NodeUpdate, ForgetsAnAbortThatCameTooLateButNeverAStop) {
  using enum NodeRunResult;
  const std::string c0 = "0 C Update Complete;", s4 = "4 S No Update Required!;",
                    c11 = "11 C Update Complete;", a11 = "11 A Update Aborted;";
  const struct {
    const char *abort_at, *stop_at;
    NodeRunResult result;
    std::string ends;
  } cases[] = {
      {"", "", kCompleted, c0 + s4 + c11},
      {"1 pumped", "", kAborted, "0 A Update Aborted;"},
      {"2 pumped", "", kCompleted, c0 + s4 + c11},  // too late for node 0
      {"3 pumped", "", kAborted, c0 + s4 + a11},
      {"", "1 pumped", kStopped, "0 A Update Aborted;"},
      {"", "2 pumped", kStopped, c0},
      {"", "4 S No Update Required!", kStopped, c0 + s4},
      {"", "3 pumped", kStopped, c0 + s4 + a11},
      {"", "4 pumped", kStopped, c0 + s4 + c11},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.abort_at) + " | " + c.stop_at);
    ThreeNodes run;
    run.log.abort_at = c.abort_at;
    run.log.stop_at = c.stop_at;
    EXPECT_EQ(run.Run(2, run.log), c.result);
    EXPECT_EQ(run.log.ends, c.ends);
    EXPECT_EQ(run.On(11) == 0x0131, run.log.ends.ends_with(c11));
  }
}

// Every exchange of a run goes wrong in turn: erase, two records and finish of two nodes.
TEST(NodeUpdate, AFaultEndsTheRunWithItsWordAndEveryNodeCanBeProgrammedAgain) {
  constexpr int kTimeout = -1, kLostRequest = -2;
  const std::pair<int, std::string> ways[] = {{kTimeout, "Timeout"},
                                              {kLostRequest, "Timeout"},
                                              {2, "CMD_FAIL"},
                                              {3, ""},
                                              {4, "FLASH_FAIL"},
                                              {5, "CONFIG_FAIL"},
                                              {6, "EEPROM_FAIL"},
                                              {9, ""},
                                              {10, "NODE_FAIL"},
                                              {11, "CRC_FAIL"},
                                              {12, ""}};
  for (const auto& [way, word_of_record] : ways) {
    for (int exchange = 0; exchange < 8; ++exchange) {
      SCOPED_TRACE(std::to_string(way) + " in exchange " + std::to_string(exchange));
      ThreeNodes run;
      const testing::FaultyLibrary::Which which{.nth = exchange + 1};
      if (way >= 0) run.faulty.AnswerWithEcho(which, static_cast<std::uint8_t>(way));
      if (way == kTimeout) run.faulty.FailRead(which);
      if (way == kLostRequest) run.faulty.FailWrite(which);
      std::string word = exchange % 4 == 1 || exchange % 4 == 2 ? word_of_record : "";
      // A node that never heard of the erase refuses its first record.
      if (exchange % 4 == 0 && way == kLostRequest) word = "CMD_FAIL";
      const bool first = exchange < 4;
      run.Run(2, run.log);
      EXPECT_EQ(run.log.events.back(),
                word.empty() ? "11 C Update Complete"
                             : (first ? "0 F " : "11 F ") + word + " - Update Failed");
      EXPECT_EQ(run.nodes[0].flash_version, first && !word.empty() ? 0x0120 : 0x0131);
      if (first && !word.empty()) {
        EXPECT_EQ(run.On(11), 0x0120) << "it keeps what it has";
      }

      run.choice.force = true;
      NodeLog again;
      EXPECT_EQ(run.Run(2, again), NodeRunResult::kCompleted);
      for (const std::size_t node : {0U, 4U, 11U}) EXPECT_EQ(run.On(node), 0x0131) << node;
    }
  }
}

}  // namespace
}  // namespace quillon
