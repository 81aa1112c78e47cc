// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>
#include <cstdint>
#include <stdexcept>

class QAction;
class QMenu;
class QMessageBox;
class QTabWidget;

namespace quillon {

class CDeviceTreeCtrl;
class CGridCtrl;

// What a user does with mouse and keyboard, and how a user finds things: by what they are called.
// All throw std::runtime_error when there is nothing of that name, or when it cannot be clicked.
namespace stage {

// The visible control in `place` that has this accessible name or description.
template <typename Control>
Control& Named(const QWidget& place, const QString& name) {
  for (auto* const control : place.findChildren<Control*>()) {
    const QStringList called{control->accessibleName(), control->accessibleDescription()};
    if (called.contains(name) && control->isVisible()) return *control;
  }
  throw std::runtime_error("There is no \"" + name.toStdString() + "\" to be seen.");
}

// Lets everything that is under way be painted.
void LetPaint();

void ClickButton(const QWidget& place, const QString& name);
// The board with this index of the table.
void ClickBoard(CDeviceTreeCtrl& tree, std::uint32_t board);
// A port of a board's node, both counted from 0. False when the tree has none there.
bool ClickPort(CDeviceTreeCtrl& tree, std::uint32_t board, int node, int half);
// Opens the context menu of the board; returns when it has been closed.
void OpenContextMenu(CDeviceTreeCtrl& tree, std::uint32_t board);
void ClickTab(QTabWidget& tabs, const QString& title);

// Rows and columns by their titles.
int RowOf(const CGridCtrl& grid, const QString& title);
int ColumnOf(const CGridCtrl& grid, const QString& title);
void ClickCell(CGridCtrl& grid, int row, int column);
// Picks a choice from the list that is open over the grid.
void ClickChoice(CGridCtrl& grid, const QString& choice);

// The entry of this text.
QAction& Entry(const QMenu& menu, const QString& text);
void ClickEntry(QMenu& menu, const QString& text);
// Clicks Yes, or else OK; returns the text of the button.
QString Consent(QMessageBox& box);

}  // namespace stage
}  // namespace quillon
