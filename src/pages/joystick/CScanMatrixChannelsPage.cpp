// SPDX-License-Identifier: MIT
#include "pages/joystick/CScanMatrixChannelsPage.h"

#include "pages/common/InputGrid.h"

namespace quillon {

CScanMatrixChannelsPage::CScanMatrixChannelsPage(PageContext context, const Page& page,
                                                 QWidget* parent)
    : CSettingsPage(context, page, tr("Digital Inputs Configuration"), parent),
      grid_(AddGrid(Body(), tr("Digital channels"), InputGrid())),
      encoder_(grid_->ColumnOf("encoder")) {
  for (int row = 2; row < grid_->Rows(); row += 2) grid_->SetEnabledCell(row, encoder_, true);
  CScanMatrixChannelsPage::OnShown();
}

// The board stores one decoding for a pair: the even row shows what it means for line B.
void CScanMatrixChannelsPage::OnShown() {
  for (int row = 2; row < grid_->Rows(); row += 2) {
    QString text = grid_->Text(row - 1, encoder_);
    if (text.endsWith(QLatin1Char('A'))) text.back() = QLatin1Char('B');
    grid_->SetText(row, encoder_, text);
    grid_->SetValue(row, encoder_, grid_->Value(row - 1, encoder_));
  }
  grid_->Redraw();
}

}  // namespace quillon
