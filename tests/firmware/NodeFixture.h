// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <string_view>
#include <vector>

#include "firmware/NodeUpdate.h"
#include "firmware/RecordAt.h"
#include "lab/sim/SimFixture.h"
#include "testing/link/FaultyLibrary.h"

namespace quillon {

// Keeps what a run tells as one line an event, nodes counted from 0, and has wishes.
class NodeLog : public NodeUpdateObserver {
 public:
  void OnBegun(std::size_t node) override { Note(node, "begun"); }
  void OnProgress(std::size_t node, int percent) override {
    Note(node, std::to_string(percent) + " %");
  }
  void OnVersion(std::size_t node, VersionWord version) override {
    Note(node, "version " + VersionText(version));
  }
  void OnEnded(std::size_t node, NodeEnd end, std::string_view text) override {
    const std::string ends[] = {"skipped", "completed", "aborted", "failed"};
    Note(node, ends[static_cast<std::size_t>(end)] + ": " + std::string(text));
    if (end == NodeEnd::kSkipped) stop = stop || stop_at_skip;
  }
  bool AbortRequested() override { return abort; }
  void ForgetAbort() override { abort = false; }
  bool StopRequested() override { return stop; }
  void Pump() override {
    ++pumped;
    abort = abort || pumped == abort_after;
    stop = stop || pumped == stop_after;
  }

  std::vector<std::string> events;
  int pumped = 0;
  int abort_after = -1, stop_after = -1;
  bool stop_at_skip = false, abort = false, stop = false;

 private:
  void Note(std::size_t node, const std::string& what) {
    events.push_back(std::to_string(node) + " " + what);
  }
};

// A simulated board in Flash Mode, its nodes 0, 4 and 11 with version 1.20, and an image of version
// 1.31 for them.
class NodeFixture {
 public:
  static constexpr int kRecords = 3;

  explicit NodeFixture(int records = kRecords)
      : board(R"("product": "0x0800", "firmware": "1.10", "mode": "flash", "nodes": [
          {"node": 1, "flash": "1.20"}, {"node": 5, "flash": "1.20"},
          {"node": 12, "flash": "1.20"}])"),
        faulty(board.bus) {
    image.device_id = 0x0800;
    image.node_version = 0x0131;
    for (int i = 0; i < records; ++i) {
      const std::vector<std::uint8_t> data(56, static_cast<std::uint8_t>(i));
      image.records.push_back(RecordAt(static_cast<std::uint16_t>(i * 56), data));
      contents.insert(contents.end(), data.begin(), data.end());
    }
    for (const std::size_t node : {0U, 4U, 11U}) {
      nodes[node] = {1, 0x0100, 0x0120, true};
      choice.checked[node] = true;
    }
  }

  NodeRunResult Run(NodeLog& log) {
    return NodeUpdate(faulty, board.record, nodes, image, choice, log).Run();
  }

  const sim::Node& NodeAt(std::size_t node) { return board.TheBoard().State().nodes[node]; }

  // Whether the node of the board has all of the image.
  bool Has(std::size_t node) {
    return NodeAt(node).flash_version == 0x0131 && NodeAt(node).flash.bytes == contents;
  }

  sim::SimFixture board;
  testing::FaultyLibrary faulty;
  KvxImage image;
  NodeRecords nodes;
  NodeChoice choice;
  std::vector<std::uint8_t> contents;  // of a node's flash, once the image is in it
};

}  // namespace quillon
