// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsPage.h"
#include "pages/common/EncoderPairs.h"
#include "pages/common/GridRows.h"
#include "settings/DigitalBlock.h"

class QCheckBox;

namespace quillon {

// Whether a family's boards can read their inputs as a scan matrix.
enum class ScanMatrix { kNone, kSwitchable };

// "Digital Channels" of the joystick controllers: 16 inputs, single or in pairs with a rotary
// encoder.
class CDigitalChannelsPage final : public CSettingsPage {
  Q_OBJECT

 public:
  CDigitalChannelsPage(PageContext context, ScanMatrix scan_matrix, QWidget* parent = nullptr);

 protected:
  bool RetrieveRoutine() override;
  bool UpdateRoutine() override;
  void DefaultsRoutine() override;

 private:
  void AddScanMatrixBox();
  bool HasScanMatrix() const { return scan_matrix_ == ScanMatrix::kSwitchable; }
  void OnClick(int row, int column);
  bool OnEndEdit(int row, int column);

  ScanMatrix scan_matrix_;
  CGridCtrl* grid_;
  QCheckBox* scan_matrix_box_ = nullptr;
  digital::Block block_;
  digital::ScanMatrixByte scan_matrix_byte_;
  GridRows rows_;
  EncoderPairs encoder_pairs_;
};

}  // namespace quillon
