// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QTest>

#include "widgets/CCheckList.h"

namespace quillon {
namespace {

struct List : CCheckList {
  List() : CCheckList({"Thing", "State"}) {
    SetRows(3);
    for (int row = 0; row < 3; ++row) Write(row, 0, QStringLiteral("Thing %1").arg(row));
    Write(1, 1, "new");
    Paint(1, qRgb(1, 2, 3));
    Redraw();
    show();
  }
  void Key(Qt::Key key, bool held = false) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, {}, held);
    QCoreApplication::sendEvent(this, &press);
  }
  // Name, value and states of a cell for a screen reader.
  QString Spoken(int row, int column) {
    const auto* const cell =
        QAccessible::queryAccessibleInterface(this)->tableInterface()->cellAt(row, column);
    const QAccessible::State state = cell->state();
    return cell->text(QAccessible::Name) + "; " + cell->text(QAccessible::Value) +
           (state.checkable ? "; box" : "") + (state.checked ? "; checked" : "");
  }
};

}  // namespace

TEST(CheckList, TogglesTheRowOfTheCurrentCellByKeyboard) {
  List list;
  const QSignalSpy toggled(&list, &CCheckList::Toggled);
  list.setCurrentIndex(list.model()->index(0, 1));
  list.Key(Qt::Key_Down);
  list.Key(Qt::Key_Space);
  EXPECT_EQ(list.AsText(), "Thing\tState\n[ ] Thing 0\t\n[x] Thing 1\tnew\n[ ] Thing 2\t\n");
  list.Key(Qt::Key_Space, true);
  EXPECT_TRUE(list.IsChecked(1)) << "a key that is held";
  list.Key(Qt::Key_Space);
  EXPECT_FALSE(list.IsChecked(1));
  EXPECT_EQ(toggled.count(), 2);
}

TEST(CheckList, TellsScreenReadersEachRowsNameBoxAndProgress) {
  List list;
  list.Check(2, true);
  list.ShowProgress(1, 1, 45);
  list.Redraw();
  EXPECT_EQ(list.Spoken(2, 0), "Thing 2, Thing, on; on; box; checked");
  EXPECT_EQ(list.Spoken(1, 0), "Thing 1, Thing, off; off; box");
  EXPECT_EQ(list.Spoken(1, 1), "Thing 1, State, 45 %; 45 %");
  QAccessible::queryAccessibleInterface(&list)
      ->tableInterface()
      ->cellAt(1, 0)
      ->actionInterface()
      ->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_TRUE(list.IsChecked(1));
}

// Colours of the picture, as a user sees them.
TEST(CheckList, PaintsTheBarOnlyUntilSomethingIsWrittenThere) {
  List list;
  list.setColumnWidth(1, 200);
  const auto middle = [&] {
    const QRect cell = list.visualRect(list.model()->index(1, 1));
    const QImage image = list.viewport()->grab(cell).toImage();
    return image.pixel(image.width() / 4, image.height() / 2) & 0xFFFFFF;
  };
  EXPECT_EQ(middle(), qRgb(1, 2, 3) & 0xFFFFFF);
  list.ShowProgress(1, 1, 50);
  list.Redraw();
  EXPECT_NE(middle(), qRgb(1, 2, 3) & 0xFFFFFF);
  list.Write(1, 1, "");
  list.Redraw();
  EXPECT_EQ(middle(), qRgb(1, 2, 3) & 0xFFFFFF);

  list.SetFootLine("foot");
  QTest::keySequence(&list, QKeySequence::Copy);
  EXPECT_TRUE(QGuiApplication::clipboard()->text().endsWith("[ ] Thing 2\t\nfoot\n"));
}

}  // namespace quillon
