// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <sstream>

#include "devlink/Detection.h"
#include "devlink/Exchange.h"
#include "devlink/NoLibrary.h"
#include "devlink/TracedLibrary.h"
#include "testing/link/TranscriptLibrary.h"

namespace quillon {
namespace {

using quillon::testing::TranscriptLibrary;

constexpr std::string_view kSession = R"(quillon trace 1
1.000000 close 0 -> 1
2.000000 detect 2 -> 1 boards 1
board pid 0910 version 0282 product "Joystick" maker "M\x01" serial "001"
3.000000 detect 1 -> 0
4.000000 detect 3 -> 1 boards 1
board pid 0800 version 0111 product "Nodes" maker "" serial "002"
5.000000 write 1 -> 0 : 00 00 00 00 06 *
6.000000 read 1 -> 4
7.000000 write 0 -> 1 : 00 0a 08 12 11 *
8.000000 read 0 -> 0 : 11 01 02 03 *
9.000000 close 2 -> 0
)";

// What a program does that starts, retrieves one block and ends.
void RunSession(HidLibrary& library) {
  DeviceTable table;
  EXPECT_TRUE(CloseBoards(library, table));
  for (const std::uint32_t type : {2U, 1U, 3U}) DetectBoards(library, table, type);
  ASSERT_EQ(table.Count(), 2U);
  EXPECT_EQ(table.Record(1).queried_version, 0);
  HidPacket packet{0, 10, 8, 18, 0x11};
  EXPECT_TRUE(QueryPacket(library, table.Record(0), packet));
  EXPECT_EQ(packet, (HidPacket{0x11, 1, 2, 3}));
  EXPECT_FALSE(CloseBoards(library, table));
}

TEST(TracedLibrary, WritesATraceThatPlaysAsATranscript) {
  std::string trace;
  {
    TranscriptLibrary board(kSession);
    std::ostringstream out;
    double now = 100;
    TracedLibrary traced(
        board, [&](auto text) { return out << text, std::nullopt; }, [&] { return now++; });
    RunSession(traced);
    trace = out.str();
  }
  EXPECT_EQ(trace, kSession);
  TranscriptLibrary replay(trace);
  RunSession(replay);
}

// A library whose every optional function answers, and that reports more boards than fit.
class FullLibrary : public NoLibrary {
 public:
  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> /*free*/,
                         std::uint32_t /*type*/) override {
    count = 0xFFFFFFFF;
    return 1;
  }
  bool SetDeviceChangeHandler(DeviceChangeHandler /*handler*/, void* context) override {
    return context == this;
  }
  Problem DescribeProblem(const DeviceRecord* record) override {
    return {KVUSB_PROBLEM_IN_USE, record == nullptr ? "library" : "board"};
  }
};

TEST(TracedLibrary, HandsOnWhatItDoesNotTraceAndBoundsWhatItDoes) {
  FullLibrary inner;
  std::ostringstream out;
  std::optional<std::string> wrong;
  int stops = 0;
  TracedLibrary traced(
      inner, [&](auto text) { return out << text, wrong; }, [] { return 0.0; });
  traced.SetWhenStopped([&] { ++stops; });
  DeviceRecord record{};
  EXPECT_EQ(traced.DescribeProblem(nullptr), (Problem{KVUSB_PROBLEM_IN_USE, "library"}));
  EXPECT_EQ(traced.DescribeProblem(&record), (Problem{KVUSB_PROBLEM_IN_USE, "board"}));
  EXPECT_TRUE(traced.SetDeviceChangeHandler(nullptr, &inner));
  EXPECT_EQ(out.str(), "quillon trace 1\n");

  std::uint32_t count = 0;
  EXPECT_EQ(traced.DetectHID(count, {&record, 1}, 2), 1);
  EXPECT_EQ(count, 0xFFFFFFFFU);
  EXPECT_THAT(out.str(), ::testing::HasSubstr("detect 2 -> 1 boards 1\n"));

  wrong = "The file is full.";
  for (int i = 0; i < 2; ++i) EXPECT_EQ(traced.DetectHID(count, {&record, 1}, 3), 1);
  EXPECT_EQ(stops, 1) << "said once";
  EXPECT_EQ(traced.DescribeProblem(nullptr),
            (Problem{KVUSB_PROBLEM_IN_USE, "library The trace has stopped. The file is full."}));
}

}  // namespace
}  // namespace quillon
