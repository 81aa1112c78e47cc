// SPDX-License-Identifier: MIT
#include "app/MainMenu.h"

#include <QMenuBar>

namespace quillon {
namespace {

constexpr int kFirmwareCheck = 32779;

QAction* AddEntry(QMenu& menu, const char* text, int command, const std::function<void()>& handler,
                  const QString& why_disabled = {}) {
  QAction* const action = menu.addAction(QString::fromLatin1(text));
  action->setData(command);
  if (handler) {
    QObject::connect(action, &QAction::triggered, &menu, [handler] { handler(); });
  } else {
    action->setEnabled(false);
    action->setToolTip(why_disabled);
  }
  return action;
}

QMenu& AddMenu(QMenuBar& bar, const char* title) {
  QMenu* const menu = bar.addMenu(QString::fromLatin1(title));
  menu->setToolTipsVisible(true);
  return *menu;
}

}  // namespace

void FillMainMenu(QMenuBar& bar, const MainMenuHandlers& handlers, bool auto_update) {
  const QString no_files =
      QObject::tr("Settings live in the board: retrieve and update them on its pages.");
  QMenu& file = AddMenu(bar, "&File");
  AddEntry(file, "&Load...", 61452, {}, no_files);
  AddEntry(file, "&Save", 57603, {}, no_files);
  AddEntry(file, "S&ave as...", 32782, {}, no_files);
  file.addSeparator();
  AddEntry(file, "&Exit", 57665, handlers.exit);

  QMenu& tools = AddMenu(bar, "&Tools");
  AddEntry(tools, "&Software version check", 32778, handlers.check_program);
  AddEntry(tools, "&Firmware version check", kFirmwareCheck, handlers.check_firmware);

  QMenu& options = AddMenu(bar, "Options");
  QAction* const check = AddEntry(options, "Check for updates on startup", 32796, [] {});
  check->setCheckable(true);
  check->setChecked(auto_update);
  QObject::connect(check, &QAction::toggled, &options, handlers.toggle_auto_update);

  QMenu& help = AddMenu(bar, "&Help");
  AddEntry(help, "&Help Topics", 57667, handlers.help);
  help.addSeparator();
  AddEntry(help, "&About...", 100, handlers.about);
}

void OfferFirmwareCheck(const QMenuBar& bar, bool offer) {
  for (const QAction* const menu : bar.actions()) {
    for (QAction* const entry : menu->menu()->actions()) {
      if (entry->data().toInt() != kFirmwareCheck) continue;
      entry->setEnabled(offer);
      entry->setToolTip(offer ? QString() : QObject::tr("There is no board to check for."));
    }
  }
}

QList<QAction*> GrayMainMenu(const QMenuBar& bar) {
  QList<QAction*> items = bar.actions();
  for (const QAction* const menu : bar.actions()) items += menu->menu()->actions();
  items.removeIf([](const QAction* item) { return item->isSeparator() || !item->isEnabled(); });
  for (QAction* const item : items) item->setEnabled(false);
  return items;
}

}  // namespace quillon
