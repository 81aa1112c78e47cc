// SPDX-License-Identifier: MIT
#include "stage/Hands.h"

#include <QAbstractButton>
#include <QContextMenuEvent>
#include <QListView>
#include <QMenu>
#include <QMessageBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

#include "tree/CDeviceTreeCtrl.h"
#include "widgets/CChoiceList.h"
#include "widgets/CGridCtrl.h"

namespace quillon::stage {
namespace {

constexpr int kPaintTime = 30;  // milliseconds

[[noreturn]] void Miss(const QString& what) { throw std::runtime_error(what.toStdString()); }

QString WithoutMnemonic(QString text) { return text.remove(QLatin1Char('&')); }

void Click(QWidget& widget, const QPoint& at) {
  QTest::mouseMove(&widget, at);
  QTest::mouseClick(&widget, Qt::LeftButton, {}, at);
  LetPaint();
}

// What can be seen of the item, scrolled into view.
QPoint PointAt(QAbstractItemView& view, const QModelIndex& index) {
  view.scrollTo(index);
  return view.visualRect(index).intersected(view.viewport()->rect()).center();
}

QModelIndex BoardItem(const CDeviceTreeCtrl& tree, std::uint32_t board) {
  const QAbstractItemModel& model = *tree.model();
  for (int root = 0; root < model.rowCount(); ++root) {
    const QModelIndex parent = model.index(root, 0);
    for (int row = 0; row < model.rowCount(parent); ++row) {
      const QModelIndex item = model.index(row, 0, parent);
      if (item.data(DeviceTreeModel::kItemDataRole).toUInt() == board + 1) return item;
    }
  }
  Miss(QStringLiteral("The tree has no board %1.").arg(board));
}

template <typename TitleAt>
int Find(int count, const QString& title, TitleAt title_at) {
  for (int i = 1; i < count; ++i) {
    if (title_at(i).trimmed() == title) return i;
  }
  Miss(QStringLiteral("The grid has no \"%1\".").arg(title));
}

}  // namespace

void LetPaint() { QTest::qWait(kPaintTime); }

void ClickButton(const QWidget& place, const QString& name) {
  auto& button = Named<QAbstractButton>(place, name);
  if (!button.isEnabled()) Miss(QStringLiteral("The button \"%1\" is disabled.").arg(name));
  Click(button, button.rect().center());
}

void ClickBoard(CDeviceTreeCtrl& tree, std::uint32_t board) {
  Click(*tree.viewport(), PointAt(tree, BoardItem(tree, board)));
}

bool ClickPort(CDeviceTreeCtrl& tree, std::uint32_t board, int node, int half) {
  const QModelIndex item = tree.model()->index(node, 0, BoardItem(tree, board));
  if (!item.isValid()) return false;
  const QModelIndex port = tree.model()->index(half, 0, item);
  tree.expand(port.parent().parent());
  tree.expand(port.parent());
  tree.scrollTo(port);
  Click(*tree.viewport(), PointAt(tree, port));
  return true;
}

void OpenContextMenu(CDeviceTreeCtrl& tree, std::uint32_t board) {
  const QPoint at = PointAt(tree, BoardItem(tree, board));
  QContextMenuEvent event(QContextMenuEvent::Mouse, at, tree.viewport()->mapToGlobal(at));
  QCoreApplication::sendEvent(tree.viewport(), &event);
  LetPaint();
}

void ClickTab(QTabWidget& tabs, const QString& title) {
  QTabBar& bar = *tabs.tabBar();
  for (int i = 0; i < bar.count(); ++i) {
    if (bar.tabText(i) != title) continue;
    if (!bar.isTabEnabled(i)) Miss(QStringLiteral("The tab \"%1\" is disabled.").arg(title));
    return Click(bar, bar.tabRect(i).center());
  }
  Miss(QStringLiteral("There is no tab \"%1\".").arg(title));
}

int RowOf(const CGridCtrl& grid, const QString& title) {
  return Find(grid.Rows(), title, [&](int row) { return grid.Text(row, 0); });
}

int ColumnOf(const CGridCtrl& grid, const QString& title) {
  return Find(grid.Columns(), title, [&](int column) { return grid.Text(0, column); });
}

void ClickCell(CGridCtrl& grid, int row, int column) {
  const QModelIndex index = grid.model()->index(row - 1, column - 1);
  Click(*grid.viewport(), PointAt(grid, index));
}

void ClickChoice(CGridCtrl& grid, const QString& choice) {
  const auto* const popup = grid.findChild<CChoiceList*>();
  if (popup == nullptr || !popup->isVisible()) Miss(QStringLiteral("No list of choices is open."));
  auto& list = *popup->findChild<QListView*>();
  const QAbstractItemModel& model = *list.model();
  const auto found = model.match(model.index(0, 0), Qt::DisplayRole, choice, 1, Qt::MatchExactly);
  if (found.isEmpty()) Miss(QStringLiteral("The list offers no \"%1\".").arg(choice));
  Click(*list.viewport(), PointAt(list, found.first()));
}

QAction& Entry(const QMenu& menu, const QString& text) {
  for (QAction* const action : menu.actions()) {
    if (WithoutMnemonic(action->text()) == text) return *action;
  }
  Miss(QStringLiteral("The menu has no entry \"%1\".").arg(text));
}

void ClickEntry(QMenu& menu, const QString& text) {
  QAction& entry = Entry(menu, text);
  if (!entry.isEnabled()) Miss(QStringLiteral("The entry \"%1\" is disabled.").arg(text));
  Click(menu, menu.actionGeometry(&entry).center());
}

QString Consent(QMessageBox& box) {
  QAbstractButton* button = box.button(QMessageBox::Yes);
  if (button == nullptr) button = box.button(QMessageBox::Ok);
  if (button == nullptr) Miss(QStringLiteral("The box has neither Yes nor OK."));
  QString text = WithoutMnemonic(button->text());
  QTest::mouseClick(button, Qt::LeftButton);
  return text;
}

}  // namespace quillon::stage
