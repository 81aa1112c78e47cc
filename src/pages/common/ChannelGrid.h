// SPDX-License-Identifier: MIT
#pragma once

#include <QRgb>

class QBoxLayout;
class QString;

namespace quillon {

class CGridCtrl;

// Background colours of the cells of a channel grid: in the clicked row, and in the others.
inline constexpr QRgb kClickedRow = 0xFFBFD4E3;  // RGB(191,212,227)
inline constexpr QRgb kOtherRows = 0xFFF0F0F0;   // RGB(240,240,240)

// Adds a grid of channels to a settings page's layout. It has the images for on and off. Every data
// cell begins plain, disabled and in the colour of unclicked rows; the page changes that for the
// cells that it has. The counts include the titles.
CGridCtrl* AddChannelGrid(QBoxLayout* layout, const QString& name, int rows, int columns);

// Titles rows with `format`, whose %1 becomes 1, 2, and so on.
void TitleRows(CGridCtrl& grid, int first_row, int count, const QString& format);

// For a column in which at most one row may be set: clears the column in all rows but `row`.
void ClearOtherRows(CGridCtrl& grid, int row, int column);

}  // namespace quillon
