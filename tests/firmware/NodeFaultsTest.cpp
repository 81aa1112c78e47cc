// SPDX-License-Identifier: MIT
#include <functional>
#include <optional>

#include "firmware/NodeFixture.h"

// Every exchange of a run over three nodes goes wrong in turn, in every way in which it can.
namespace quillon {
namespace {

constexpr int kExchanges = NodeFixture::kRecords + 2;  // of a node: erase, records, finish
constexpr std::size_t kNodes[] = {0, 4, 11};

// A way to go wrong, and the word for it where it strikes a record; none where that is no failure.
struct Way {
  std::string name;
  std::function<void(NodeFixture&, int exchange)> provoke;
  std::optional<std::string> word;
};

std::vector<Way> Ways() {
  std::vector<Way> ways = {
      {"write fails", [](NodeFixture& f, int n) { f.faulty.FailWrite({.nth = n}); }, "Timeout"},
      {"read fails", [](NodeFixture& f, int n) { f.faulty.FailRead({.nth = n}, 1); }, "Timeout"},
      {"read times out", [](NodeFixture& f, int n) { f.faulty.FailRead({.nth = n}, 4); },
       "Timeout"},
      {"empty answer", [](NodeFixture& f, int n) { f.faulty.AnswerShort({.nth = n}, 0); }, {}},
  };
  const std::pair<std::uint8_t, std::optional<std::string>> statuses[] = {
      {2, "CMD_FAIL"}, {3, {}},           {4, "FLASH_FAIL"}, {5, "CONFIG_FAIL"}, {6, "EEPROM_FAIL"},
      {9, {}},         {10, "NODE_FAIL"}, {11, "CRC_FAIL"},  {12, {}},           {29, {}},
  };
  for (const auto& [status, word] : statuses) {
    ways.push_back(
        {"status " + std::to_string(status),
         [echo = status](NodeFixture& f, int n) { f.faulty.AnswerWithEcho({.nth = n}, echo); },
         word});
  }
  return ways;
}

// The word with which a run ends whose `exchange` goes wrong; none where it goes on to its end.
std::optional<std::string> ExpectedWord(const Way& way, int exchange) {
  const int place = exchange % kExchanges;
  const bool erase = place == 0, finish = place == kExchanges - 1;
  if (finish) return {};
  if (!erase) return way.word;
  // Only an erase that did not reach the node shows, in the first record.
  return way.name == "write fails" ? std::optional<std::string>("CMD_FAIL") : std::nullopt;
}

TEST(NodeFaults, EndTheRunWithTheirWordAndLeaveEveryNodeProgrammable) {
  for (const Way& way : Ways()) {
    for (int exchange = 0; exchange < 3 * kExchanges; ++exchange) {
      SCOPED_TRACE(way.name + ", exchange " + std::to_string(exchange));
      NodeFixture fixture;
      way.provoke(fixture, exchange + 1);
      NodeLog log;
      const NodeRunResult result = fixture.Run(log);
      const auto word = ExpectedWord(way, exchange);
      const std::size_t struck = static_cast<std::size_t>(exchange) / kExchanges;
      EXPECT_EQ(result, word ? NodeRunResult::kFailed : NodeRunResult::kCompleted);
      const std::string node = std::to_string(kNodes[word ? struck : 2]);
      EXPECT_EQ(log.events.back(), node + (word ? " failed: " + *word + " - Update Failed"
                                                : " completed: Update Complete"));
      for (std::size_t i = 0; i < 3; ++i) {
        const VersionWord written = !word || i < struck ? 0x0131 : 0x0120;
        EXPECT_EQ(fixture.nodes[kNodes[i]].flash_version, written) << "node " << kNodes[i];
        const bool later = word && i > struck;
        EXPECT_TRUE(!later || fixture.NodeAt(kNodes[i]).flash_version == 0x0120);
      }

      fixture.choice.force = true;
      NodeLog again;
      EXPECT_EQ(fixture.Run(again), NodeRunResult::kCompleted);
      for (const std::size_t i : kNodes) EXPECT_TRUE(fixture.Has(i)) << "node " << i;
    }
  }
}

}  // namespace
}  // namespace quillon
