// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>

#include "pages/common/CSettingsPage.h"
#include "pages/common/GridRows.h"
#include "settings/HatBlock.h"

namespace quillon {

// Whether a family's HAT connectors offer the modes with outputs too, with the damping of these on
// the page, or only those of inputs.
enum class HatUse { kWithOutputs, kInputsOnly };

// "HAT Channels" of the joystick controllers.
class CHatChannelsPage final : public CSettingsPage {
  Q_OBJECT

 public:
  CHatChannelsPage(PageContext context, HatUse use, QWidget* parent = nullptr);

 protected:
  bool RetrieveRoutine() override;
  bool UpdateRoutine() override;
  void DefaultsRoutine() override;

 private:
  bool HasOutputs() const { return use_ == HatUse::kWithOutputs; }
  void BuildHats();
  void BuildDamping();
  void LoadDamping();
  void StoreDamping();
  bool OnHatEdit(int row, int column);
  void KeepFalcoOnBoth();

  HatUse use_;
  hat::Block block_;
  // One word for each damped channel, out of the two records that hold four each.
  std::array<std::uint32_t, hat::kDampedChannels> damping_{};
  CGridCtrl* hat_grid_;
  GridRows hat1_row_;
  GridRows hat2_row_;
  CGridCtrl* damping_grid_ = nullptr;
  std::optional<GridRows> damping_rows_;
};

}  // namespace quillon
