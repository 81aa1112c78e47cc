// SPDX-License-Identifier: MIT
#include <functional>
#include <map>
#include <optional>

#include "firmware/FlashFixture.h"

// Every exchange of a run goes wrong in turn, in every way in which it can.
namespace quillon {
namespace {

// Exchange 1 is the erase, the last one the finish.
constexpr int kErase = 1, kFinish = FlashFixture::kRecords + 2;

// A way to go wrong, and what the program sees of it.
struct Way {
  std::string name;
  std::function<void(FlashFixture&, int exchange)> provoke;
  std::optional<int> status;  // in byte 0 of an answer that came; none came without it
};

std::string ErrorText(int status) {
  const std::map<int, std::string> names{
      {2, "CMD_FAIL"}, {4, "FLASH_FAIL"}, {5, "CONFIG_FAIL"}, {6, "EEPROM_FAIL"}};
  const auto name = names.find(status);
  return name == names.end() ? "" : "\r\nError Code: " + name->second + "!\r\n";
}

// The log of a run whose `exchange` goes wrong.
std::string ExpectedLog(const Way& way, int exchange) {
  if (exchange == kFinish) return kBegun + kComplete;
  if (exchange == kErase) {
    if (!way.status || way.status == 2) return kErasing + "Erase failed!\r\n" + kFailure;
    return kBegun + kComplete;
  }
  if (!way.status) return kBegun + kFailure;
  const std::string error = ErrorText(*way.status);
  return kBegun + (error.empty() ? kComplete : error + kFailure);
}

// Where exactly a failed run stands: how many records got a turn of the event queue.
int ExpectedPumps(const std::string& log, int exchange) {
  if (log.ends_with(kComplete)) return FlashFixture::kRecords;
  return exchange == kErase ? 0 : exchange - 2;
}

std::vector<Way> Ways() {
  std::vector<Way> ways = {
      {"write fails", [](FlashFixture& b, int n) { b.faulty.FailWrite({.nth = n}); }, {}},
      {"read fails", [](FlashFixture& b, int n) { b.faulty.FailRead({.nth = n}, 1); }, {}},
      {"read times out", [](FlashFixture& b, int n) { b.faulty.FailRead({.nth = n}, 4); }, {}},
      {"empty answer", [](FlashFixture& b, int n) { b.faulty.AnswerShort({.nth = n}, 0); }, 0},
  };
  for (const int status : {2, 3, 4, 5, 6}) {
    ways.push_back({"status " + std::to_string(status),
                    [status](FlashFixture& b, int n) {
                      b.faulty.AnswerWithEcho({.nth = n}, static_cast<std::uint8_t>(status));
                    },
                    status});
  }
  return ways;
}

TEST(FlashFaults, AtEveryExchangeLeaveTheBoardProgrammable) {
  for (const Way& way : Ways()) {
    for (int exchange = kErase; exchange <= kFinish; ++exchange) {
      SCOPED_TRACE(way.name + ", exchange " + std::to_string(exchange));
      FlashFixture fixture;
      way.provoke(fixture, exchange);
      FlashLog log;
      const FlashResult result = fixture.Run(log);
      const std::string expected = ExpectedLog(way, exchange);
      EXPECT_EQ(log.log, expected);
      EXPECT_EQ(result,
                expected.ends_with(kComplete) ? FlashResult::kCompleted : FlashResult::kFailed);
      EXPECT_EQ(log.pumped, ExpectedPumps(expected, exchange));
      fixture.ExpectProgrammable();
    }
  }
}

}  // namespace
}  // namespace quillon
