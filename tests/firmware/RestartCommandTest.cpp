// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "firmware/RestartCommand.h"
#include "testing/link/TranscriptLibrary.h"

namespace quillon {
namespace {

// What each button sends to a board of type 1, 2 and 3.
struct Row {
  RestartButton button;
  BoardFamily family;
  int type1, type2, type3;
};

TEST(RestartCommand, DependsOnButtonModeAndFamily) {
  using enum RestartButton;
  using enum BoardFamily;
  const Row rows[] = {
      {kFlash, kJoystick, 9, 0xFF, 0xFF},    {kDevice, kJoystick, 0xFF, 9, 0xFF},
      {kExecute, kJoystick, 0xFF, 9, 0xFF},  {kReboot, kJoystick, 9, 9, 0xFF},
      {kDevice, kInputBanks, 0xFF, 9, 0xFF}, {kReboot, kScanMatrix, 9, 9, 0xFF},

      {kFlash, kNodeSystem, 9, 0xFF, 0xFF},  {kDevice, kNodeSystem, 0xFF, 9, 9},
      {kExecute, kNodeSystem, 0xFF, 9, 9},   {kReboot, kNodeSystem, 9, 9, 9},

      {kFlash, kSpi, 9, 0xFF, 0xFF},         {kDevice, kSpi, 0xFF, 0xFF, 9},
      {kExecute, kSpi, 0xFF, 0xFF, 9},       {kReboot, kSpi, 9, 0xFF, 9},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE("button " + std::to_string(static_cast<int>(row.button)) + ", family " +
                 std::to_string(static_cast<int>(row.family)));
    for (const Product& product : Products()) {
      if (product.family != row.family) continue;
      EXPECT_EQ(RestartCommand(row.button, 1, product), row.type1);
      EXPECT_EQ(RestartCommand(row.button, 2, product), row.type2);
      EXPECT_EQ(RestartCommand(row.button, 3, product), row.type3);
    }
  }
}

TEST(RestartCommand, IsSentWithoutAPayload) {
  testing::TranscriptLibrary library(R"(
    write 0 -> 0 : 00 00 00 00 ff *
    read 0 -> 1
    write 0 -> 1 : 00 00 00 00 09 *)");
  DeviceRecord board{};
  SendRestart(library, board, 0xFF);
  SendRestart(library, board, 9);
}

}  // namespace
}  // namespace quillon
