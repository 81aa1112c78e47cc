// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsPage.h"
#include "pages/common/EncoderPairs.h"
#include "pages/common/GridRows.h"
#include "settings/ScanMatrixBlocks.h"

namespace quillon {

// "Digital Channels" of the scan matrix controller: 64 inputs, and what each pair of them does with
// a rotary encoder or a push-pull switch.
class CScanMatrixChannelsPage final : public CSettingsPage {
  Q_OBJECT

 public:
  explicit CScanMatrixChannelsPage(PageContext context, QWidget* parent = nullptr);

 protected:
  bool RetrieveRoutine() override;
  bool UpdateRoutine() override;
  void DefaultsRoutine() override;

 private:
  void OnClick(int row, int column);
  bool OnEndEdit(int row, int column);

  CGridCtrl* grid_;
  matrix_input::Block inputs_;
  matrix_pair::Block pairs_;
  GridRows input_rows_;
  GridRows pair_rows_;  // the odd rows
  EncoderPairs encoder_pairs_;
};

}  // namespace quillon
