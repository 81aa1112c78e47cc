// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "firmware/SerialNumber.h"
#include "testing/link/TranscriptLibrary.h"

namespace quillon {
namespace {

TEST(SerialNumber, IsRefusedWithoutACommandUnlessItHasThreeDigits) {
  testing::TranscriptLibrary library("");
  DeviceRecord board{};
  for (const char* text : {"", "1", "12", "12a", " 12", "1.2"}) {
    EXPECT_EQ(SetSerial(library, board, text), SerialResult::kInvalid) << text;
  }
}

TEST(SerialNumber, IsSetByAnEchoAndByAFailedExchange) {
  const std::pair<const char*, SerialResult> cases[] = {
      {"write 0 -> 0 : 00 00 00 00 07 00 30 34 32 *\nread 0 -> 0 : 07 *", SerialResult::kSet},
      {"write 0 -> 0 : 00 00 00 00 07 00 30 34 32 *\nread 0 -> 0 : ee *", SerialResult::kRefused},
      // Intended: whoever makes a lost answer a failure tells users of failures that are none.
      {"write 0 -> 0 : 00 00 00 00 07 00 30 34 32 *\nread 0 -> 4", SerialResult::kSet},
      {"write 0 -> 1 : 00 00 00 00 07 00 30 34 32 *", SerialResult::kSet},
  };
  for (const auto& [transcript, result] : cases) {
    testing::TranscriptLibrary library(transcript);
    DeviceRecord board{};
    EXPECT_EQ(SetSerial(library, board, "0427"), result) << transcript;
  }
}

}  // namespace
}  // namespace quillon
