// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>
#include <QTimer>

#include "pages/joystick/CAxisCalibrateDlg.h"
#include "pages/joystick/CAxisTweakPage.h"
#include "testing/link/TranscriptLibrary.h"
#include "testing/pages/PageFixture.h"
#include "widgets/CStatusLed.h"

namespace quillon::testing {
namespace {

// As a screen reader does it: a click.
void Click(QAbstractButton& button) {
  auto* const actions = QAccessible::queryAccessibleInterface(&button)->actionInterface();
  actions->doAction(QAccessibleActionInterface::toggleAction());
  QCoreApplication::processEvents();
}

// Opens the calibration of the Z axis and acts on the dialog as soon as it runs its event loop.
void Calibrate(CAxisTweakPage& page, std::function<void(QDialog&)> act) {
  bool opened = false;
  const auto handle = [&] {
    auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    opened = true;
    EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
    act(*dialog);
    if (!dialog->isVisible()) return;
    ADD_FAILURE() << "still open";
    dialog->reject();
  };
  // Behind the click, which waits on the event queue itself.
  QTimer::singleShot(0, &page, [&] { QTimer::singleShot(0, &page, handle); });
  auto& box = Named<QCheckBox>(page, "Z axis: Calibrate");
  Click(box);
  EXPECT_TRUE(opened);
  EXPECT_FALSE(box.isChecked());
}

template <typename Widget>
Widget& WithText(const QWidget& dialog, const QString& text) {
  for (auto* const widget : dialog.findChildren<Widget*>()) {
    if (widget->text() == text) return *widget;
  }
  throw std::runtime_error("The dialog has no " + text.toStdString());
}

void Press(QDialog& dialog, const char* button) { WithText<QPushButton>(dialog, button).click(); }
void Choose(QDialog& dialog, const char* mode) { Click(WithText<QRadioButton>(dialog, mode)); }
QSpinBox& Value(const QDialog& dialog, const char* name) { return Named<QSpinBox>(dialog, name); }

// The mode, whether its values can be edited, and the values.
std::string StateText(const QDialog& dialog) {
  std::string text;
  for (const char* const mode : {"Automatic", "Manual"}) {
    if (WithText<QRadioButton>(dialog, mode).isChecked()) text += std::string(mode) + " ";
  }
  for (const char* const name : {"Min", "Center", "Max"}) {
    const QSpinBox& value = Value(dialog, name);
    text += value.text().toStdString() + (value.isEnabled() ? " " : "- ");
  }
  for (const auto* const label : dialog.findChildren<QLabel*>()) {
    if (label->text().startsWith("Move the")) text += label->isEnabled() ? "told" : "untold";
  }
  return text;
}

// How an exchange of the Z axis goes.
constexpr const char* kBegin = R"(
  write 0 -> 0 : 00 00 00 00 30 00 02 *
  read 0 -> 0 : 30 01 04 02 80 03 fc *)";
constexpr const char* kAccept = R"(
  write 0 -> 0 : 00 00 00 00 31 00 02 *
  read 0 -> 0 : 31 *)";
constexpr const char* kCancel = R"(
  write 0 -> 0 : 00 00 00 00 32 00 02 *
  read 0 -> 0 : 32 *)";
constexpr const char* kMeasured = "Automatic 1025- 32770- 64515- told";

class AxisCalibrate : public ::testing::Test {
 protected:
  TranscriptLibrary library{""};
  PageFixture fixture{library};
  CAxisTweakPage page{fixture.Context(), *FindPage(BoardFamily::kJoystick, "axis_tweak")};
};

}  // namespace

TEST_F(AxisCalibrate, BeginsToMeasureWhenItOpens) {
  library.Expect(kBegin);
  Calibrate(page, [&](QDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Z Axis Calibrate");
    EXPECT_EQ(StateText(dialog), kMeasured);
    WithText<QLabel>(dialog, "Min: 1025  Cen: 32770  Max: 64515");
    WithText<QLabel>(dialog,
                     "Move the Z axis control to it's minimum and maximum positions.\n\nIf this "
                     "channel has a center position, center the\naxis before clicking on the OK "
                     "button.");
    EXPECT_FALSE(fixture.link.gate.IsOpen());
    Button(page, "Retrieve").click();  // sends nothing: the dialog holds the gate
    library.Expect(kAccept);
    Press(dialog, "OK");
  });
  EXPECT_TRUE(fixture.link.gate.IsOpen());
}

TEST_F(AxisCalibrate, EveryWayToCloseSendsOneCommandWhichAloneDecides) {
  constexpr const char* kNotBegun = R"(
    write 0 -> 0 : 00 00 00 00 30 00 02 *
    read 0 -> 0 : 31 01 04 02 80 03 fc *)";
  const auto press = [](const char* button) {
    return [button](QDialog& dialog) { Press(dialog, button); };
  };
  const auto hit = [](Qt::Key key) {
    return [key](QDialog& dialog) { QTest::keyClick(&dialog, key); };
  };
  struct Case {
    const char* name;
    std::function<void(QDialog&)> act;
    const char* closing;
    const char* begin = kBegin;
    bool failed = false;
  };
  const Case cases[]{
      {"OK", press("OK"), kAccept},
      {"Enter", hit(Qt::Key_Return), kAccept},
      {"Cancel", press("Cancel"), kCancel},
      {"Escape", hit(Qt::Key_Escape), kCancel},
      {"close button", [](QDialog& dialog) { dialog.close(); }, kCancel},
      {"hidden", [](QDialog& dialog) { dialog.hide(); }, kCancel},
      {"twice",
       [](QDialog& dialog) {
         Press(dialog, "OK");
         dialog.close();
         dialog.reject();
       },
       kAccept},
      {"not begun, but accepted", press("OK"), kAccept, kNotBegun},
      {"not begun, but cancelled", press("Cancel"), kCancel, kNotBegun},
      {"accept not written", press("OK"), "write 0 -> 1 : 00 00 00 00 31 00 02 *", kBegin, true},
      {"accept refused", press("OK"), "write 0 -> 0 : 00 00 00 00 31 00 02 *\nread 0 -> 0 : ee *",
       kBegin, true},
      {"cancel not answered", press("Cancel"), "write 0 -> 0 : 00 00 00 00 32 00 02 *\nread 0 -> 4",
       kBegin, true},
      {"darkened again", press("OK"), kAccept}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    library.Expect(c.begin);
    if (c.failed) {
      fixture.prompts.ExpectMessage("Z axis calibration failure.", "Z Axis Calibration",
                                    UserPrompts::Icon::kError);
      fixture.prompts.WhileOpen([&] { EXPECT_FALSE(fixture.link.gate.IsOpen()); });
    }
    Calibrate(page, [&](QDialog& dialog) {
      EXPECT_EQ(StateText(dialog),
                c.begin == kNotBegun ? "Automatic 0- 32768- 65535- told" : kMeasured);
      library.Expect(c.closing);
      c.act(dialog);
    });
    EXPECT_EQ(Lamp(page, "Error").IsLit(), c.failed);
    EXPECT_EQ(Lamp(page, "Error").IsBlinking(), c.failed);
  }
}

TEST_F(AxisCalibrate, ManualValuesGoOutAsTheyAreShown) {
  library.Expect(kBegin);
  Calibrate(page, [&](QDialog& dialog) {
    Choose(dialog, "Manual");
    EXPECT_EQ(StateText(dialog), "Manual 1025 32770 64515 untold");
    QSpinBox& max = Value(dialog, "Max");
    max.setFocus();
    max.selectAll();
    QTest::keyClicks(&max, "70000");
    Value(dialog, "Min").setFocus();
    EXPECT_EQ(max.text(), "65535");
    max.setValue(258);
    Value(dialog, "Min").selectAll();
    QTest::keyClicks(&Value(dialog, "Min"), "70000");  // and not left
    library.Expect(R"(
      write 0 -> 0 : 00 00 00 00 33 00 02 ff ff 02 80 02 01 *
      read 0 -> 0 : 33 *)");
    dialog.accept();
  });
}

TEST_F(AxisCalibrate, ReadsAgainWithAutomaticAndSendsNothingWithDefaults) {
  library.Expect(kBegin);
  Calibrate(page, [&](QDialog& dialog) {
    Choose(dialog, "Manual");
    Press(dialog, "Defaults");
    EXPECT_EQ(StateText(dialog), "Automatic 0- 32768- 65535- told");
    library.Expect(kBegin);
    Choose(dialog, "Automatic");
    EXPECT_EQ(StateText(dialog), kMeasured);
    library.Expect(R"(
      write 0 -> 0 : 00 00 00 00 30 00 02 *
      read 0 -> 0 : 30 00 00 ff ff 07 *)");
    Choose(dialog, "Automatic");
    EXPECT_EQ(StateText(dialog), "Automatic 0- 65535- 7- told");
    Choose(dialog, "Manual");
    Press(dialog, "Defaults");
    library.Expect(kAccept);
    Press(dialog, "OK");
  });
}

TEST_F(AxisCalibrate, DoesNotOpenWhileSomethingElseIsUnderWay) {
  const auto hold = fixture.link.gate.Enter();
  auto& box = Named<QCheckBox>(page, "Z axis: Calibrate");
  box.click();
  EXPECT_FALSE(box.isChecked());
  box.setChecked(true);
  box.click();
  EXPECT_TRUE(box.isChecked()) << "as the retrieve has left it";
}

TEST_F(AxisCalibrate, TellsWhenNoDialogCouldBeShown) {
  class Page : public CAxisTweakPage {
   public:
    using CAxisTweakPage::CAxisTweakPage;
    using CAxisTweakPage::ReportCalibration;
  };
  Page reporting(fixture.Context(), *FindPage(BoardFamily::kJoystick, "axis_tweak"));
  fixture.prompts.ExpectMessage("Dialog box could not be created!", "Quillon",
                                UserPrompts::Icon::kNone);
  reporting.ReportCalibration(0, CalibrationStatus::kNotShown);
  EXPECT_FALSE(Lamp(reporting, "Error").IsLit());
}

}  // namespace quillon::testing
