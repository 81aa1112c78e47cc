// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QApplication>

#include "testing/OwnFolders.h"

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  const quillon::testing::OwnFolders folders;
  qputenv("QT_QPA_PLATFORM", "offscreen");
#ifdef FONTS
  qputenv("QT_QPA_FONTDIR", FONTS);
#endif
  QApplication::setStyle("Fusion");
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
