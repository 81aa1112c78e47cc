// SPDX-License-Identifier: MIT
#include "pages/common/ChannelGrid.h"

#include <QBoxLayout>

#include "res/Icons.h"
#include "widgets/CGridCtrl.h"

namespace quillon {

CGridCtrl* AddChannelGrid(QBoxLayout* layout, const QString& name, int rows, int columns) {
  auto* const grid = new CGridCtrl;
  grid->setAccessibleName(name);
  grid->Resize(rows, columns);
  grid->SetToggleImages(Icon("toggle-off"), Icon("toggle-on"));
  for (int row = 1; row < rows; ++row) {
    for (int column = 1; column < columns; ++column) {
      grid->SetEnabledCell(row, column, false);
      grid->SetBackground(row, column, kOtherRows);
    }
  }
  layout->addWidget(grid);
  return grid;
}

void TitleRows(CGridCtrl& grid, int first_row, int count, const QString& format) {
  for (int i = 0; i < count; ++i) grid.SetText(first_row + i, 0, format.arg(i + 1));
}

void ClearOtherRows(CGridCtrl& grid, int row, int column) {
  for (int other = 1; other < grid.Rows(); ++other) {
    if (other != row) grid.SetValue(other, column, 0);
  }
}

}  // namespace quillon
