// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QCheckBox>
#include <QLineEdit>
#include <QTest>

#include "pages/joystick/CDigitalChannelsPage.h"
#include "testing/pages/TranscriptPage.h"
#include "widgets/CGridCtrl.h"

namespace quillon::testing {
namespace {

enum Column { kOn = 1, kMaster, kInvert, kMode, kPulse, kEncoder };

// Blocks of 16 inputs: mode|_|invert|master|on, pulse width, _|encoder. Bits that nobody edits are
// set in the inputs 2, 8 and 9; the codes of input 9 mean nothing.
constexpr const char* kHeld =
    "01 00 00 1b ff f0 25 19 00 32 00 00 40 00 01 41 00 01 45 00 03 4d 01 a3 f9 07 f4 01 00 00 "
    "01 00 00 00 00 00 01 00 00 01 00 00 00 00 00 00 00 02";
// The same after an update of a page that showed Toggle and GRAY 1X for input 9 before.
constexpr const char* kSentBack =
    "01 00 00 1b ff f0 25 19 00 32 00 00 40 00 01 41 00 01 45 00 03 4d 01 a3 19 07 f1 01 00 00 "
    "01 00 00 00 00 00 01 00 00 01 00 00 00 00 00 00 00 02";

constexpr const char* kFactory =
    "01 00 00 01 00 00 01 00 00 01 00 00 01 00 00 01 00 00 01 00 00 01 00 00 01 00 00 01 00 00 "
    "01 00 00 01 00 00 01 00 00 01 00 00 01 00 00 01 00 00";

std::string Retrieve(const std::string& data) {
  return "write 0 -> 0 : 00 00 00 00 12 *\nread 0 -> 0 : 12 " + data + " *\n";
}

std::string Update(const std::string& payload) {
  return "write 0 -> 0 : 00 00 00 00 0e 01 " + payload + " *\nread 0 -> 0 : 0e *\n";
}

QCheckBox& ScanMatrixBox(const QWidget& page) { return *page.findChild<QCheckBox*>(); }

struct Fixture : TranscriptGridPage<CDigitalChannelsPage> {
  explicit Fixture(BoardFamily family) : TranscriptGridPage(*FindPage(family, "digital")) {}
};

}  // namespace

TEST(DigitalChannels, ShowsTheBlockAndLeavesCellsWhoseCodesItDoesNotKnow) {
  Fixture fixture(BoardFamily::kJoystick);
  fixture.grid.Enter(9, kMode, "Toggle");
  fixture.grid.Enter(9, kEncoder, "GRAY 1X - A");
  fixture.Press("Retrieve", Retrieve(kHeld));
  const char* rows[]{"Input 1: ON Normal=0 0=0 None=0",
                     "Input 2: ON Master Toggle=1 255=255 None=0",
                     "Input 3: ON Invert Pulse=2 25=25 None=0",
                     "Input 4: Master Momentary=3 0=0 None=0",
                     "Input 5: Rotary=4 0=0 GRAY 1X - A=1",
                     "Input 6: ON Rotary=4 0=0 GRAY 1X - B=1",
                     "Input 7: ON Invert Rotary=4 0=0 GRAY 4X - A=3",
                     "Input 8: ON Invert Rotary=4 1=1 GRAY 4X - B=3",
                     "Input 9: ON Toggle=1 7=7 GRAY 1X - A=1",
                     "Input 10: ON Normal=0 0=0 None=0"};
  for (int row = 1; row <= 10; ++row) EXPECT_EQ(fixture.Row(row), rows[row - 1]);
  EXPECT_EQ(fixture.Row(16), "Input 16: Normal=0 0=0 GRAY 2X - B=2");
  fixture.Press("Update", Update(kSentBack));
}

TEST(DigitalChannels, SmallControllerHasTheScanMatrixByteInFront) {
  const struct {
    const char* held;
    bool on;
  } cases[]{{"01 ", true}, {"ff ", true}, {"00 ", false}, {"fe ", false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.held);
    Fixture fixture(BoardFamily::kSmallJoystick);
    QCheckBox& box = ScanMatrixBox(fixture.page);
    fixture.grid.Enter(9, kMode, "Toggle");
    fixture.grid.Enter(9, kEncoder, "GRAY 1X - A");
    fixture.Press("Retrieve", Retrieve(c.held + std::string(kHeld)));
    EXPECT_EQ(box.isChecked(), c.on);
    EXPECT_EQ(fixture.Row(3), "Input 3: ON Invert Pulse=2 25=25 None=0");
    EXPECT_EQ(fixture.Row(16), "Input 16: Normal=0 0=0 GRAY 2X - B=2");

    fixture.Press("Update", Update((c.on ? "01 " : "00 ") + std::string(kSentBack)));
    box.click();
    EXPECT_EQ(OriginOf(fixture.page), "Stored in Board : 001. Edited since.");
    fixture.Press("Update", Update((c.on ? "00 " : "01 ") + std::string(kSentBack)));
  }
}

TEST(DigitalChannels, FullControllerShowsTheScanMatrixBoxDisabledAndSaysWhy) {
  Fixture fixture(BoardFamily::kJoystick);
  EXPECT_EQ(ScanMatrixBox(fixture.page).text(), "Scan matrix mode.");
  EXPECT_FALSE(ScanMatrixBox(fixture.page).isEnabled());
  EXPECT_FALSE(ScanMatrixBox(fixture.page).toolTip().isEmpty());
}

TEST(DigitalChannels, ShowsWhatARuleDoesToOtherRowsAndWhichRowWasClicked) {
  Fixture fixture(BoardFamily::kJoystick);
  fixture.grid.Enter(4, kMode, "Rotary");
  fixture.grid.Enter(7, kEncoder, "GRAY 2X - A");
  EXPECT_EQ(fixture.Row(3), "Input 3: ON Rotary=4 0=0 None=0");
  EXPECT_EQ(fixture.Row(8), "Input 8: ON Normal=0 0=0 GRAY 2X - B=2");
  for (int row = 1; row <= 16; ++row)  // the decoding is chosen on the odd one
    EXPECT_EQ(fixture.grid.Kind(row, kEncoder), row % 2 ? CellKind::kCombo : CellKind::kPlain)
        << row;

  fixture.grid.Click(2, kMaster);
  fixture.grid.Click(9, kMaster);
  EXPECT_EQ(fixture.Row(2), "Input 2: ON Normal=0 0=0 None=0");
  EXPECT_EQ(fixture.Row(9), "Input 9: ON Master Normal=0 0=0 None=0");
  fixture.grid.Click(0, kOn);
  fixture.grid.Click(8, 0);
  EXPECT_EQ(fixture.grid.Background(9, kOn), qRgb(191, 212, 227)) << "titles highlight nothing";
  EXPECT_EQ(fixture.grid.Background(8, kOn), qRgb(240, 240, 240));
  fixture.page.LoadDefaults();
  EXPECT_EQ(fixture.grid.Background(9, kOn), qRgb(220, 220, 220)) << "no row is the clicked one";
}

TEST(DigitalChannels, RefusesAPulseWidthThatTheBoardCannotHold) {
  Fixture fixture(BoardFamily::kJoystick);
  fixture.page.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&fixture.page));
  const auto type = [&](const QString& digits, Qt::Key last = Qt::Key_Return) {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    fixture.grid.setFocus();
    fixture.grid.setCurrentIndex(fixture.grid.model()->index(2, kPulse - 1));
    QTest::keyClicks(&fixture.grid, digits.left(1));
    auto* const editor = fixture.grid.findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, digits.mid(1));
    QTest::keyClick(editor, last);
    QCoreApplication::processEvents();
  };
  type("255");
  EXPECT_EQ(fixture.Row(3), "Input 3: ON Normal=0 255=255 None=0");
  for (const char* refused : {"256", "999"}) {
    fixture.board.prompts.ExpectMessage("Enter a value between 0 - 255", "Invalid Pulse Width",
                                        UserPrompts::Icon::kExclamation);
    // The box takes the focus, and the user goes elsewhere afterwards: no second message.
    fixture.board.prompts.WhileOpen([&] { Button(fixture.page, "Update").setFocus(); });
    type(refused);
    EXPECT_EQ(fixture.Row(3), "Input 3: ON Normal=0 255=255 None=0");
    fixture.grid.setFocus();
    fixture.grid.setCurrentIndex(fixture.grid.model()->index(5, 0));
    Button(fixture.page, "Retrieve").setFocus();
  }
  type("7");
  EXPECT_EQ(fixture.Row(3), "Input 3: ON Normal=0 7=7 None=0");

  // The click that ends the entry does nothing else; an exchange or a question would fail the test.
  for (const char* const button : {"Retrieve", "Update", "Defaults"}) {
    fixture.board.prompts.ExpectMessage("Enter a value between 0 - 255", "Invalid Pulse Width",
                                        UserPrompts::Icon::kExclamation);
    type("256", Qt::Key_End);
    QTest::mouseClick(&Button(fixture.page, button), Qt::LeftButton);
    type("2", Qt::Key_Backspace);
    QTest::mouseClick(&Button(fixture.page, button), Qt::LeftButton);
    EXPECT_EQ(fixture.Row(3), "Input 3: ON Normal=0 7=7 None=0");
  }
  std::string stored = kFactory;
  fixture.library.Expect(Update(stored.replace(22, 1, "7")));
  QTest::mouseClick(&Button(fixture.page, "Update"), Qt::LeftButton);
}

}  // namespace quillon::testing
