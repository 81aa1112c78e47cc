// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "pages/common/CSettingsPage.h"
#include "pages/common/GridRows.h"
#include "settings/AnalogBlocks.h"

namespace quillon {

// Which analog inputs a family's boards have.
enum class AnalogInputs { kWithEncoders, kAnalogOnly };

// "Analog Channels" of the joystick controllers: eight analog inputs and, on the full controller,
// six absolute encoders and the incremental channel, and which joystick axes they drive.
class CAnalogChannelsPage final : public CSettingsPage {
  Q_OBJECT

 public:
  CAnalogChannelsPage(PageContext context, AnalogInputs inputs, QWidget* parent = nullptr);

 protected:
  bool RetrieveRoutine() override;
  bool UpdateRoutine() override;
  void DefaultsRoutine() override;

 private:
  bool HasEncoders() const { return inputs_ == AnalogInputs::kWithEncoders; }
  void ClearAxesOfChannelsThatAreOff(int first_row, int last_row);
  GridRows& RowsAt(int row);
  void OnClick(int row, int column);

  AnalogInputs inputs_;
  CGridCtrl* grid_;
  analog::Block analog_;
  encoder::Block encoder_;
  GridRows analog_rows_;
  std::optional<GridRows> encoder_rows_;
  std::optional<GridRows> incremental_row_;
};

}  // namespace quillon
