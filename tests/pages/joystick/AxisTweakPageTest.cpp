// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QSpinBox>
#include <QTest>

#include "pages/joystick/CAxisTweakPage.h"
#include "testing/pages/TranscriptPage.h"

namespace quillon::testing {
namespace {

// What the line of an axis shows: its checked boxes, then the percentages and the combined axis.
std::string LineText(const QWidget& page, const char* axis) {
  const QString prefix = QStringLiteral("%1 axis: ").arg(axis);
  std::string text = std::string(axis) + ":";
  for (const char* const box : {"Active", "Calibrate"}) {
    if (Named<QCheckBox>(page, prefix + box).isChecked()) text += std::string(" ") + box;
  }
  for (const char* const percent : {"Trim Min %", "Deadzone %", "Trim Max %"}) {
    text += " " + Named<QSpinBox>(page, prefix + percent).text().toStdString();
  }
  return text + " " + Named<QComboBox>(page, prefix + "Combine").currentText().toStdString();
}

// Every field at an end or in the middle somewhere, and the bits that nobody edits.
constexpr const char* kRetrieve = R"(
  write 0 -> 0 : 00 00 00 00 22 *
  # _|combine|calibrate|active, trim min, dead zone, trim max
  read 0 -> 0 : 22 0d 05 0a 64 fe 00 00 00 e3 ff c8 65 00 01 02 03 04 00 00 00 11 64 64 64 b4 00 ff 00 1c 00 00 ff *)";

struct Fixture : TranscriptPage<CAxisTweakPage> {
  Fixture() : TranscriptPage(*FindPage(BoardFamily::kJoystick, "axis_tweak")) {}
};

const char* const kAxes[]{"X", "Y", "Z", "Rx", "Ry", "Rz", "S1", "S2"};

}  // namespace

TEST(AxisTweak, ShowsTheBlockAndSendsItBackWithoutLoss) {
  Fixture fixture;
  const auto& page = fixture.page;
  fixture.Press("Retrieve", kRetrieve);
  EXPECT_EQ(LineText(page, "X"), "X: Active 5 10 100 Rx");
  EXPECT_EQ(LineText(page, "Y"), "Y: Calibrate 0 0 0 S2");
  EXPECT_EQ(LineText(page, "Z"), "Z: Active Calibrate 255 200 101 X") << "more than 100 is shown";
  EXPECT_EQ(LineText(page, "Rx"), "Rx: 1 2 3 X");
  EXPECT_EQ(LineText(page, "Ry"), "Ry: 0 0 0 Y");
  EXPECT_EQ(LineText(page, "Rz"), "Rz: Active 100 100 100 Ry");
  EXPECT_EQ(LineText(page, "S1"), "S1: 0 255 0 Rz");
  EXPECT_EQ(LineText(page, "S2"), "S2: 0 0 255 S2");
  EXPECT_EQ(OriginOf(page), "Retrieved from Board : 001.");

  // Only the calibrate flags are gone.
  fixture.Press("Update", R"(
    write 0 -> 0 : 00 00 00 00 23 01 0d 05 0a 64 fc 00 00 00 e1 ff c8 65 00 01 02 03 04 00 00 00 11 64 64 64 b4 00 ff 00 1c 00 00 ff *
    read 0 -> 0 : 23 *)");
  EXPECT_EQ(LineText(page, "Y"), "Y: 0 0 0 S2");
  EXPECT_EQ(LineText(page, "Z"), "Z: Active 255 200 101 X");
}

TEST(AxisTweak, SendsEveryEditOfAnAxis) {
  Fixture fixture;
  const auto& page = fixture.page;
  fixture.Press("Retrieve", kRetrieve);
  Named<QCheckBox>(page, "Y axis: Active").click();
  Named<QComboBox>(page, "Y axis: Combine").setCurrentText("S1");
  Named<QSpinBox>(page, "Y axis: Trim Min %").setValue(1);
  Named<QSpinBox>(page, "Y axis: Deadzone %").setValue(2);
  Named<QSpinBox>(page, "Y axis: Trim Max %").setValue(100);
  const auto& combine =
      *QAccessible::queryAccessibleInterface(&Named<QComboBox>(page, "Y axis: Combine"));
  EXPECT_TRUE(combine.text(QAccessible::Description).startsWith("Edited. The axis that"));
  fixture.Press("Update", R"(
    write 0 -> 0 : 00 00 00 00 23 01 0d 05 0a 64 f9 01 02 64 e1 ff c8 65 00 01 02 03 04 00 00 00 11 64 64 64 b4 00 ff 00 1c 00 00 ff *
    read 0 -> 0 : 23 *)");
  EXPECT_TRUE(combine.text(QAccessible::Description).startsWith("The axis that"));
}

TEST(AxisTweak, ShowsWhatBecomesOfAnEntryBeforeItIsSent) {
  Fixture fixture;
  auto& page = fixture.page;
  page.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
  auto& percent = Named<QSpinBox>(page, "X axis: Trim Min %");
  for (const bool with_the_mouse : {true, false}) {
    percent.setFocus();
    percent.selectAll();
    QTest::keyClicks(&percent, "150");
    auto& update = Button(page, "Update");
    with_the_mouse ? QTest::mouseClick(&update, Qt::LeftButton) : update.click();
    EXPECT_EQ(LineText(page, "X"), "X: 100 0 0 X");
  }
  fixture.library.Expect(
      "write 0 -> 0 : 00 00 00 00 23 01 00 64 00 00 04 00 00 00 08 00 00 00 0c 00 00 "
      "00 10 00 00 00 14 00 00 00 18 00 00 00 1c *\nread 0 -> 0 : 23 *");
  QTest::mouseClick(&Button(page, "Update"), Qt::LeftButton);
}

}  // namespace quillon::testing
