// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <sstream>

#include "devlink/NoLibrary.h"
#include "devlink/TracedLibrary.h"

namespace quillon {
namespace {

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
  double now = 100;
  TracedLibrary traced(
      inner, [&](auto text) { return out << text, wrong; }, [&] { return now++; });
  traced.SetWhenStopped([&] { ++stops; });
  DeviceRecord record{};
  EXPECT_EQ(traced.DescribeProblem(nullptr), (Problem{KVUSB_PROBLEM_IN_USE, "library"}));
  EXPECT_EQ(traced.DescribeProblem(&record), (Problem{KVUSB_PROBLEM_IN_USE, "board"}));
  EXPECT_TRUE(traced.SetDeviceChangeHandler(nullptr, &inner));
  EXPECT_EQ(out.str(), "quillon trace 1\n");

  std::uint32_t count = 0;
  EXPECT_EQ(traced.DetectHID(count, {&record, 1}, 2), 1);
  EXPECT_EQ(count, 0xFFFFFFFFU);
  EXPECT_THAT(out.str(), ::testing::HasSubstr("\n1.000000 detect 2 -> 1 boards 1\n"));
  EXPECT_EQ(traced.CloseDevices({&record, 1}), 1);
  EXPECT_THAT(out.str(), ::testing::EndsWith("\n2.000000 close 1 -> 1\n"));

  wrong = "The file is full.";
  for (int i = 0; i < 2; ++i) EXPECT_EQ(traced.DetectHID(count, {&record, 1}, 3), 1);
  EXPECT_EQ(stops, 1) << "said once";
  EXPECT_EQ(traced.DescribeProblem(nullptr),
            (Problem{KVUSB_PROBLEM_IN_USE, "library The trace has stopped. The file is full."}));
}

}  // namespace
}  // namespace quillon
