// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsPage.h"

class QCheckBox;
class QComboBox;

namespace quillon {

class CStatusLed;

// "Expansion Port" of the joystick-style controllers: whether the port is on, and which module is
// plugged into it.
class CExpansionPortPage final : public CSettingsPage {
  Q_OBJECT

 public:
  CExpansionPortPage(PageContext context, const Page& page, QWidget* parent = nullptr);

 protected:
  void OnShown() override;

 private:
  void BuildPort(Cell active);
  void BuildModule(Cell module);
  void BuildDisplayAdvice();

  QCheckBox* active_ = nullptr;
  CStatusLed* lamp_ = nullptr;
  QComboBox* module_ = nullptr;
};

}  // namespace quillon
