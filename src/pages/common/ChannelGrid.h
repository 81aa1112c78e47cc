// SPDX-License-Identifier: MIT
#pragma once

#include <QRgb>

class QBoxLayout;
class QString;

namespace quillon {

class CGridCtrl;

// Grounds of the cells of a channel grid: the clicked row, and the others.
inline constexpr QRgb kClickedRow = 0xFFBFD4E3;  // RGB(191,212,227)
inline constexpr QRgb kOtherRows = 0xFFF0F0F0;   // RGB(240,240,240)

// A grid of channels for a settings page, in its layout: on and off images, every data cell plain,
// switched off and on the ground of unclicked rows until a page makes something of it. The counts
// include the titles.
CGridCtrl* AddChannelGrid(QBoxLayout* layout, const QString& name, int rows, int columns);

// Titles rows with `format`, whose %1 becomes 1, 2, and so on.
void TitleRows(CGridCtrl& grid, int first_row, int count, const QString& format);

// The rule of a column in which one row at most is chosen: what is set in `row` goes elsewhere.
void ClearOtherRows(CGridCtrl& grid, int row, int column);

}  // namespace quillon
