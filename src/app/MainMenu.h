// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <functional>

class QAction;
class QMenuBar;

namespace quillon {

// What the entries do.
struct MainMenuHandlers {
  std::function<void()> exit;
  std::function<void()> check_program, check_firmware;
  std::function<void(bool on)> toggle_auto_update;
  std::function<void()> help;
  std::function<void()> about;
};

// Lays out the main menu; an action's data() is its command id.
void FillMainMenu(QMenuBar& bar, const MainMenuHandlers& handlers, bool auto_update);

// Enables the firmware check where there is a board that it can be about.
void OfferFirmwareCheck(const QMenuBar& bar, bool offer);

// Disables every menu and every entry; returns those that were enabled.
QList<QAction*> GrayMainMenu(const QMenuBar& bar);

}  // namespace quillon
