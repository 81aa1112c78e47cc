// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "testing/OwnFolders.h"

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  const quillon::testing::OwnFolders folders;
  return RUN_ALL_TESTS();
}
