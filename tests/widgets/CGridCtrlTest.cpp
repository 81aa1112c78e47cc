// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QListView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStringList>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>

#include "widgets/CGridCtrl.h"

namespace quillon {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kOn = 1, kAxis = 2, kInvert = 3, kFilter = 4, kPulse = 5, kPartner = 6;

// Thirty rows of every kind of cell in a window of its own, with what it told its page.
class GridCtrl : public ::testing::Test {
 protected:
  GridCtrl() {
    const QStringList titles{"", "ON", "X", "Invert", " Filter ", "Pulse", "Partner"};
    const QStringList choices{"10", "9", "8", "7", "6", "5", "4", "3", "2", "1", "0"};
    grid_.Resize(31, 7);
    for (int column = 1; column < 7; ++column) grid_.SetText(0, column, titles[column]);
    for (int row = 1; row < 31; ++row) {
      grid_.SetText(row, 0, QStringLiteral("Analog %1").arg(row));
      grid_.SetKind(row, kOn, CellKind::kImageToggle);
      grid_.SetKind(row, kAxis, CellKind::kRadio);
      grid_.SetKind(row, kInvert, CellKind::kCheckBox);
      grid_.SetCombo(row, kFilter, choices);
      grid_.SetText(row, kFilter, QStringLiteral("5"));
      grid_.SetNumber(row, kPulse, 0, 999);
      grid_.SetText(row, kPulse, QStringLiteral("12"));
      grid_.SetValue(row, kPulse, 12);
    }
    grid_.SetClickHandler([this](int row, int column) { Note("click", row, column); });
    grid_.SetEndEditHandler([this](int row, int column) {
      Note("end", row, column);
      return accept_;
    });
    grid_.Redraw();
    auto* layout = new QVBoxLayout(&window_);
    layout->addWidget(&grid_);
    window_.resize(700, 300);
    window_.show();
    window_.activateWindow();
    grid_.setFocus();
    QCoreApplication::processEvents();
  }

  void Note(const char* what, int row, int column) {
    told_ << QStringLiteral("%1 %2 %3").arg(what).arg(row).arg(column);
  }
  QModelIndex At(int row, int column) const { return grid_.model()->index(row - 1, column - 1); }
  QPoint Middle(int row, int column) const { return grid_.visualRect(At(row, column)).center(); }
  void MouseClick(int row, int column) {
    QTest::mouseClick(grid_.viewport(), Qt::LeftButton, {}, Middle(row, column));
  }
  void DoubleClick(int row, int column) {
    MouseClick(row, column);
    QTest::mouseDClick(grid_.viewport(), Qt::LeftButton, {}, Middle(row, column));
    QTest::mouseRelease(grid_.viewport(), Qt::LeftButton, {}, Middle(row, column));
  }
  void Key(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&grid_, static_cast<Qt::Key>(key), modifiers);
  }
  void GoTo(int row, int column) { grid_.setCurrentIndex(At(row, column)); }
  QLineEdit* Editor() const {
    for (auto* editor : grid_.viewport()->findChildren<QLineEdit*>()) {
      if (editor->isVisible()) return editor;
    }
    return nullptr;
  }
  static QListView* OpenList() {
    QWidget* popup = QApplication::activePopupWidget();
    return popup != nullptr ? popup->findChild<QListView*>() : nullptr;
  }
  // Enter in an editor is finished by a queued call.
  static void Finish(QWidget* editor, Qt::Key key) {
    QTest::keyClick(editor, key);
    QCoreApplication::processEvents();
  }

  QWidget window_;
  CGridCtrl grid_{&window_};
  QStringList told_;
  bool accept_ = true;
};

TEST_F(GridCtrl, HasASoundModelWithTitlesInTheHeaders) {
  const QAbstractItemModelTester tester(grid_.model(),
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
  EXPECT_EQ(grid_.model()->rowCount(), 30);
  EXPECT_EQ(grid_.model()->headerData(3, Qt::Horizontal).toString(), " Filter ");
  EXPECT_EQ(grid_.model()->headerData(29, Qt::Vertical).toString(), "Analog 30");
  grid_.SetEnabledCell(3, kInvert, false);
  grid_.SetText(0, kFilter, QStringLiteral("Normal"));
  grid_.Redraw();
  EXPECT_EQ(grid_.model()->headerData(3, Qt::Horizontal).toString(), "Normal");
  grid_.Resize(3, 2);
  EXPECT_EQ(grid_.model()->columnCount(), 1);
  grid_.Resize(0, 0);
  EXPECT_EQ(grid_.model()->rowCount(), 0);
}

TEST_F(GridCtrl, TellsViewsOnceAboutAllThatChanged) {
  QSignalSpy data(grid_.model(), &QAbstractItemModel::dataChanged);
  QSignalSpy titles(grid_.model(), &QAbstractItemModel::headerDataChanged);
  grid_.SetText(2, kFilter, QStringLiteral("7"));
  grid_.SetValue(5, kInvert, 1);
  EXPECT_TRUE(data.isEmpty());
  grid_.Redraw();
  ASSERT_EQ(data.size(), 1);
  EXPECT_EQ(data[0][0].toModelIndex(), At(2, kInvert));
  EXPECT_EQ(data[0][1].toModelIndex(), At(5, kFilter));
  grid_.Redraw();
  grid_.SetText(2, kFilter, QStringLiteral("7"));  // as it is already
  grid_.Redraw();
  EXPECT_EQ(data.size(), 1);
  EXPECT_TRUE(titles.isEmpty());
  grid_.SetText(4, 0, QStringLiteral("Input 4"));
  grid_.Redraw();
  ASSERT_EQ(titles.size(), 1);
  EXPECT_EQ(titles[0][1].toInt(), 3);
  EXPECT_EQ(data.size(), 1);
}

TEST_F(GridCtrl, InvertsTogglesByMouseAndSpaceAndTellsThePageAfterwards) {
  std::uint32_t seen = 7;
  grid_.SetClickHandler([&](int row, int column) {
    Note("click", row, column);
    seen = grid_.Value(row, column);
  });
  for (const int column : {kOn, kAxis, kInvert}) {
    MouseClick(3, column);
    EXPECT_EQ(grid_.Value(3, column), 1U);
    EXPECT_EQ(seen, 1U);
    Key(Qt::Key_Space);
    EXPECT_EQ(grid_.Value(3, column), 0U);
    DoubleClick(3, column);
    EXPECT_EQ(grid_.Value(3, column), 0U);  // two clicks
    EXPECT_EQ(told_.size(), 4);
    told_.clear();
  }
  MouseClick(4, kPartner);
  MouseClick(4, kPulse);
  QTest::mouseClick(grid_.viewport(), Qt::RightButton, {}, Middle(4, kOn));
  QTest::mouseClick(grid_.viewport(), Qt::LeftButton, Qt::ShiftModifier, Middle(6, kOn));
  QTest::mouseClick(grid_.horizontalHeader()->viewport(), Qt::LeftButton, {}, {10, 5});
  QTest::mouseClick(grid_.verticalHeader()->viewport(), Qt::LeftButton, {}, {10, 5});
  EXPECT_THAT(told_, ElementsAre("click 4 6", "click 4 5"));
  EXPECT_EQ(grid_.Value(4, kOn), 0U);
}

TEST_F(GridCtrl, TakesAClickOnACellThatARowDoesNotHaveForOneOnTheRow) {
  grid_.SetEnabledCell(2, kAxis, false);
  grid_.SetEnabledCell(2, kFilter, false);
  grid_.SetClickHandler([this](int row, int column) {
    Note("click", row, column);
    grid_.HighlightRow(row, qRgb(191, 212, 227), qRgb(240, 240, 240));
  });
  QSignalSpy data(grid_.model(), &QAbstractItemModel::dataChanged);
  MouseClick(2, kAxis);
  EXPECT_EQ(data.size(), 1) << "shown without being asked";
  MouseClick(2, kFilter);
  grid_.Enter(2, kFilter, QStringLiteral("7"));
  EXPECT_THAT(told_, ElementsAre("click 2 2", "click 2 4"));
  EXPECT_EQ(grid_.Value(2, kAxis), 0U);
  EXPECT_EQ(OpenList(), nullptr);
  // How many pixels of a cell have exactly this colour, of a hundred.
  const auto share = [this](int row, QRgb colour) {
    const QImage cell = grid_.viewport()->grab().toImage().copy(grid_.visualRect(At(row, kAxis)));
    const auto* const pixels = reinterpret_cast<const QRgb*>(cell.constBits());
    const auto area = cell.width() * cell.height();
    return std::count(pixels, pixels + area, colour) * 100 / area;
  };
  EXPECT_GT(share(2, qRgb(191, 212, 227)), 50);
  EXPECT_LT(share(2, qRgb(191, 212, 227)), 99) << "shaded all the same";
  EXPECT_GT(share(3, qRgb(240, 240, 240)), 50);
  GoTo(2, kOn);
  Key(Qt::Key_Right);
  EXPECT_EQ(grid_.currentIndex(), At(2, kInvert));
}

TEST_F(GridCtrl, OpensAComboInManyWaysAndClosesItWithoutATrace) {
  grid_.SetText(3, kFilter, QStringLiteral("31"));  // not in the list
  grid_.SetValue(3, kFilter, 31);
  for (const int row : {2, 3}) {
    const QString text = grid_.Text(row, kFilter);
    MouseClick(row, kFilter);
    ASSERT_NE(OpenList(), nullptr);
    EXPECT_EQ(OpenList()->currentIndex().data().toString(), row == 2 ? "5" : "");
    QTest::keyClick(OpenList(), Qt::Key_Escape);
    const QList<std::pair<int, Qt::KeyboardModifier>> keys{{Qt::Key_F2, Qt::NoModifier},
                                                           {Qt::Key_Return, Qt::NoModifier},
                                                           {Qt::Key_Down, Qt::AltModifier}};
    for (const auto& [key, modifier] : keys) {
      Key(key, modifier);
      ASSERT_NE(OpenList(), nullptr) << key;
      QTest::keyClick(OpenList(), row == 2 ? Qt::Key_Tab : Qt::Key_Return);
      EXPECT_EQ(OpenList(), nullptr);
    }
    EXPECT_EQ(grid_.Text(row, kFilter), text);
  }
  EXPECT_THAT(told_, ElementsAre("click 2 4", "click 3 4"));
  EXPECT_EQ(grid_.Value(3, kFilter), 31U);
}

TEST_F(GridCtrl, ChoosesInAComboByKeysTypingAndMouse) {
  GoTo(2, kFilter);
  Key(Qt::Key_F2);
  QTest::keyClick(OpenList(), Qt::Key_Down);
  QTest::keyClick(OpenList(), Qt::Key_Return);
  EXPECT_EQ(grid_.Text(2, kFilter), "4");
  Key(Qt::Key_8);
  ASSERT_NE(OpenList(), nullptr);
  EXPECT_EQ(OpenList()->currentIndex().data().toString(), "8");
  QTest::keyClick(OpenList(), Qt::Key_Enter);
  EXPECT_EQ(grid_.Text(2, kFilter), "8");
  Key(Qt::Key_Space);
  QListView* list = OpenList();
  ASSERT_NE(list, nullptr);
  const QModelIndex entry = list->model()->index(4, 0);
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(entry).center());
  EXPECT_EQ(grid_.Text(2, kFilter), "6");
  EXPECT_THAT(told_, ElementsAre("end 2 4", "end 2 4", "click 2 4", "end 2 4"));
  Key(Qt::Key_F2);
  QTest::keyClick(OpenList(), Qt::Key_Return);  // what is shown already
  EXPECT_THAT(told_.mid(4), ElementsAre("end 2 4")) << "a choice like any other";
  accept_ = false;
  grid_.SetValue(2, kFilter, 6);
  Key(Qt::Key_F2);
  QTest::keyClick(OpenList(), Qt::Key_Up);
  QTest::keyClick(OpenList(), Qt::Key_Return);
  EXPECT_EQ(grid_.Text(2, kFilter), "6");
  EXPECT_EQ(grid_.Value(2, kFilter), 6U);
}

TEST_F(GridCtrl, TakesNumbersOnceAndLetsThePageRefuse) {
  std::uint32_t seen = 0;
  grid_.SetEndEditHandler([&](int row, int column) {
    Note("end", row, column);
    seen = grid_.Value(row, column);
    return seen < 256;
  });
  GoTo(4, kPulse);
  Key(Qt::Key_2);
  ASSERT_NE(Editor(), nullptr);
  QTest::keyClicks(Editor(), "55x7");  // neither a letter nor a fourth digit gets in
  EXPECT_EQ(Editor()->text(), "255");
  Finish(Editor(), Qt::Key_Return);
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_EQ(grid_.Text(4, kPulse), "255");
  EXPECT_EQ(seen, 255U);
  Key(Qt::Key_F2);
  QTest::keyClicks(Editor(), "999");
  Finish(Editor(), Qt::Key_Return);
  EXPECT_EQ(seen, 999U);
  EXPECT_EQ(grid_.Text(4, kPulse), "255");
  EXPECT_EQ(grid_.Value(4, kPulse), 255U);
  Key(Qt::Key_F2);
  QTest::keyClicks(Editor(), "0045");
  QTest::keyClick(Editor(), Qt::Key_Down);  // takes it and goes on
  EXPECT_EQ(grid_.Text(4, kPulse), "45");
  EXPECT_EQ(grid_.currentIndex(), At(5, kPulse));
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_THAT(told_, ElementsAre("end 4 5", "end 4 5", "end 4 5"));
}

TEST_F(GridCtrl, LeavesANumberAloneThatWasNotTyped) {
  GoTo(4, kPulse);
  Key(Qt::Key_F2);
  Finish(Editor(), Qt::Key_Return);
  Key(Qt::Key_7);
  Finish(Editor(), Qt::Key_Escape);
  Key(Qt::Key_F2);
  QTest::keyClick(Editor(), Qt::Key_Backspace);
  grid_.setFocus();  // nothing typed is no number
  DoubleClick(6, kPulse);
  ASSERT_NE(Editor(), nullptr);
  Finish(Editor(), Qt::Key_Escape);
  Key(Qt::Key_A);
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_EQ(grid_.Text(4, kPulse), "12");
  EXPECT_THAT(told_.filter("end"), IsEmpty());
}

TEST_F(GridCtrl, AsksOnceThoughAMessageBoxTakesTheFocus) {
  grid_.SetEndEditHandler([this](int row, int column) {
    Note("end", row, column);
    QDialog box(&window_);
    QTimer::singleShot(0, &box, [&box] {
      box.activateWindow();
      QCoreApplication::processEvents();
      box.accept();
    });
    box.exec();
    return false;
  });
  GoTo(4, kPulse);
  Key(Qt::Key_9);
  Finish(Editor(), Qt::Key_Return);
  EXPECT_THAT(told_, ElementsAre("end 4 5"));
  Key(Qt::Key_9);
  MouseClick(6, kInvert);  // the editor loses the focus to the grid
  grid_.setFocus();
  EXPECT_THAT(told_, ElementsAre("end 4 5", "end 4 5", "click 6 3"));
  GoTo(4, kPulse);
  Key(Qt::Key_9);
  grid_.FinishEdit();
  grid_.FinishEdit();
  EXPECT_EQ(told_.size(), 4);
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_EQ(grid_.Text(4, kPulse), "12");
}

TEST_F(GridCtrl, SurvivesAHandlerThatRebuildsIt) {
  grid_.SetEndEditHandler([this](int, int) {
    grid_.Resize(2, 2);
    return false;
  });
  GoTo(9, kPulse);
  Key(Qt::Key_9);
  Finish(Editor(), Qt::Key_Return);
  EXPECT_EQ(grid_.Rows(), 2);
  grid_.SetClickHandler([this](int, int) { grid_.Resize(1, 1); });
  grid_.Click(1, 1);
  EXPECT_EQ(grid_.Rows(), 1);
}

TEST_F(GridCtrl, ScrollsByWheelAndChangesNothing) {
  const auto wheel = [this](QWidget* target) {
    const QPointF at = target->mapTo(&window_, QPoint(20, 5));
    QWheelEvent event(at, window_.mapToGlobal(at), {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(window_.windowHandle(), &event);
  };
  GoTo(3, kFilter);
  wheel(grid_.viewport());
  const int scrolled = grid_.verticalScrollBar()->value();
  EXPECT_GT(scrolled, 0);
  GoTo(8, kPulse);
  Key(Qt::Key_F2);
  wheel(Editor());
  EXPECT_GT(grid_.verticalScrollBar()->value(), scrolled);
  Finish(Editor(), Qt::Key_Return);
  EXPECT_EQ(grid_.Text(3, kFilter), "5");
  EXPECT_EQ(grid_.Text(8, kPulse), "12");
  EXPECT_THAT(told_, IsEmpty());
}

TEST_F(GridCtrl, IsLeftByTabAndWalkedByArrows) {
  auto* after = new QLineEdit(&window_);
  window_.layout()->addWidget(after);
  after->show();
  GoTo(2, kAxis);
  Key(Qt::Key_End);
  EXPECT_EQ(grid_.currentIndex(), At(2, kPartner));
  Key(Qt::Key_Home);
  Key(Qt::Key_Down);
  EXPECT_EQ(grid_.currentIndex(), At(3, kOn));
  Key(Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), after);
}

TEST_F(GridCtrl, CopiesTheCurrentCellOrTheSelectionInWords) {
  grid_.SetValue(1, kInvert, 1);
  GoTo(1, kInvert);
  Key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), "on");
  const QItemSelection block(At(1, kInvert), At(2, kPulse));
  grid_.selectionModel()->select(block, QItemSelectionModel::ClearAndSelect);
  Key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), "on\t5\t12\noff\t5\t12");
  Key(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(grid_.selectionModel()->selectedIndexes().size(), 30 * 6);
}

TEST_F(GridCtrl, IsClickedByScreenReaders) {
  const auto cell = [this](int row, int column) {
    return QAccessible::queryAccessibleInterface(&grid_)->child(row * grid_.Columns() + column);
  };
  const auto act = [cell](int row, int column) {
    auto* const actions = cell(row, column)->actionInterface();
    actions->doAction(actions->actionNames().front());
  };
  grid_.SetMarked(3, kFilter, true);
  EXPECT_EQ(cell(3, kFilter)->text(QAccessible::Name), "Analog 3, Filter, 5, edited");
  GoTo(4, kPulse);
  Key(Qt::Key_7);
  act(5, kAxis);
  EXPECT_THAT(told_, ElementsAre("end 4 5", "click 5 2")) << "also ends what is being typed";
  act(2, kPulse);
  EXPECT_NE(Editor(), nullptr);
  act(2, kFilter);
  ASSERT_NE(OpenList(), nullptr);
  EXPECT_EQ(OpenList()->accessibleName(), "Analog 2, Filter, 5");
}

TEST_F(GridCtrl, MakesColumnsAsWideAsTitlesWithTheirBlanksAndTheWidestChoice) {
  const QString wide = QStringLiteral("      Mode      ");
  const QString choice = QStringLiteral("a choice that no cell shows at present");
  grid_.SetText(0, kAxis, wide);
  grid_.SetCombo(20, kFilter, {QStringLiteral("0"), choice});
  grid_.FitColumns();
  EXPECT_GE(grid_.columnWidth(kAxis - 1), grid_.fontMetrics().horizontalAdvance(wide));
  EXPECT_GT(grid_.columnWidth(kFilter - 1), grid_.fontMetrics().horizontalAdvance(choice));
  EXPECT_LT(grid_.columnWidth(kInvert - 1), 100);
  QFont large = grid_.font();
  large.setPointSizeF(large.pointSizeF() * 2);
  grid_.setFont(large);
  EXPECT_GT(grid_.columnWidth(kFilter - 1), grid_.fontMetrics().horizontalAdvance(choice));
  EXPECT_GE(grid_.rowHeight(0), grid_.fontMetrics().height());
}

TEST_F(GridCtrl, TakesADarkPaletteAtRunTime) {
  grid_.HighlightRow(0, 0, qRgb(240, 240, 240));
  grid_.Redraw();
  const auto ground = [this] {
    const QPoint inside = grid_.visualRect(At(2, kPartner)).topLeft() + QPoint(2, 2);
    return QColor(grid_.viewport()->grab().toImage().pixel(inside));
  };
  EXPECT_EQ(ground().rgb(), qRgb(240, 240, 240));
  QPalette dark;
  dark.setColor(QPalette::Base, QColor(30, 30, 32));
  dark.setColor(QPalette::Text, Qt::white);
  grid_.setPalette(dark);
  EXPECT_LT(ground().lightness(), 90);
}

}  // namespace
}  // namespace quillon
