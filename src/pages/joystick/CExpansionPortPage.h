// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "pages/common/CSettingsPage.h"
#include "settings/ExpansionBlock.h"

class QCheckBox;
class QComboBox;
class QLabel;

namespace quillon {

class CStatusLed;

// Which modules a family's boards take in their expansion port.
enum class ExpansionModules { kOfFullController, kOfScanMatrix };

// "Expansion Port" of the joystick-style controllers: whether the port is on, and which module is
// plugged into it.
class CExpansionPortPage final : public CSettingsPage {
  Q_OBJECT

 public:
  CExpansionPortPage(PageContext context, ExpansionModules modules, QWidget* parent = nullptr);

 protected:
  bool RetrieveRoutine() override;
  bool UpdateRoutine() override;
  void DefaultsRoutine() override;

 private:
  void BuildPort(const QStringList& modules);
  void BuildDisplayAdvice();
  void FollowActive(bool active);
  void KeepUnknownModule(bool keep);
  std::uint32_t ModuleToSend() const;
  QString NameOf(std::uint32_t module) const;
  void WarnOfReplacement();

  QCheckBox* active_ = nullptr;
  CStatusLed* lamp_ = nullptr;
  QComboBox* module_ = nullptr;
  QLabel* unknown_ = nullptr;
  QLabel* replacement_ = nullptr;
  expansion::Block block_;
  // The board has its port on, with a module that is not in the list. That code is sent back until
  // the user chooses another module, although the list shows the former choice.
  bool keeps_unknown_module_ = false;
  // The module that the board last held. `held_unseen_`: its port was off, so the list does not
  // show that module.
  std::optional<std::uint32_t> held_module_;
  bool held_unseen_ = false;
};

}  // namespace quillon
