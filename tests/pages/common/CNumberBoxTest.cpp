// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QComboBox>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "pages/common/CNumberBox.h"
#include "pages/common/WheelGuard.h"

namespace quillon::testing {
namespace {

// A box in a window with another control to go to.
class NumberBox : public ::testing::Test {
 protected:
  NumberBox() {
    auto* const layout = new QVBoxLayout(&window);
    layout->addWidget(&box);
    layout->addWidget(&other);
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    box.setFocus();
  }

  // Types a text over what stands there.
  void Type(const char* text) {
    box.selectAll();
    QTest::keyClick(&box, Qt::Key_Delete);
    QTest::keyClicks(&box, text);
  }
  void Leave() {
    other.setFocus();
    box.setFocus();
  }

  QWidget window;
  CNumberBox box{100};
  QComboBox other;
};

void Wheel(QWidget& control, int degrees) {
  QWheelEvent event(control.rect().center(), control.mapToGlobal(control.rect().center()), {},
                    {0, degrees * 8}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&control, &event);
}

}  // namespace

TEST_F(NumberBox, BringsWhatIsTypedIntoItsRange) {
  const struct {
    const char* typed;
    const char* shown;
  } cases[]{{"42", "42"},     {"100", "100"},         {"101", "100"}, {"255", "100"},
            {"70000", "100"}, {"99999999999", "100"}, {"", "0"},      {"007", "7"},
            {"-5", "5"},      {"1x2", "12"}};
  for (const auto& c : cases) {
    Type(c.typed);
    Leave();
    EXPECT_EQ(box.text().toStdString(), c.shown) << c.typed;
    Type(c.typed);
    EXPECT_EQ(std::to_string(box.Take()), c.shown) << c.typed << ", without leaving";
  }
}

TEST_F(NumberBox, KeepsWhatABoardHoldsAndLetsNothingElsePastTheLimit) {
  box.ShowHeld(200);
  EXPECT_EQ(box.Take(), 200);
  Leave();
  EXPECT_EQ(box.Take(), 200);
  QTest::keyClick(&box, Qt::Key_Up);
  EXPECT_EQ(box.Take(), 200) << "no step up";
  Type("150");
  EXPECT_EQ(box.Take(), 100);
  Type("200");
  EXPECT_EQ(box.Take(), 200) << "set back";
  QTest::keyClick(&box, Qt::Key_Down);
  EXPECT_EQ(box.Take(), 100) << "the next that may be chosen";
  QTest::keyClick(&box, Qt::Key_PageUp);
  EXPECT_EQ(box.Take(), 100);
  box.ShowHeld(30);
  Type("200");
  EXPECT_EQ(box.Take(), 100) << "no longer held";
  QTest::keyClick(&box, Qt::Key_PageDown);
  EXPECT_EQ(box.Take(), 90);
}

TEST_F(NumberBox, WheelChangesAControlOnlyWhereTheFocusIs) {
  other.addItems({"A", "B", "C"});
  other.setCurrentIndex(1);
  GuardFromWheel(&other);
  box.setValue(50);

  Wheel(other, -15);
  EXPECT_EQ(other.currentIndex(), 1);
  Wheel(box, -15);
  EXPECT_EQ(box.value(), 49);
  other.setFocus();
  Wheel(box, -15);
  EXPECT_EQ(box.value(), 49);
  Wheel(other, -15);
  EXPECT_EQ(other.currentIndex(), 2);
  EXPECT_EQ(box.focusPolicy(), Qt::StrongFocus);
}

}  // namespace quillon::testing
