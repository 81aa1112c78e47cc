// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <functional>

class QAction;
class QMenuBar;

namespace quillon {

// What the entries do. An entry without a handler is disabled and says why.
struct MainMenuHandlers {
  std::function<void()> exit;
  std::function<void(bool on)> toggle_auto_update;
  std::function<void()> about;
};

// Lays out the main menu; an action's data() is its command id.
void FillMainMenu(QMenuBar& bar, const MainMenuHandlers& handlers, bool auto_update);

// Disables every menu and every entry; returns those that were enabled.
QList<QAction*> GrayMainMenu(const QMenuBar& bar);

}  // namespace quillon
