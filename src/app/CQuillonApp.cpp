// SPDX-License-Identifier: MIT
#include "app/CQuillonApp.h"

#include <QPointer>
#include <QThread>

#include "app/BoardNotifier.h"
#include "app/CMainDialog.h"
#include "app/InstalledVersion.h"
#include "app/MessageBoxes.h"
#include "app/OpenedLibrary.h"
#include "app/Profile.h"
#include "app/SingleInstance.h"
#include "update/OpenInBrowser.h"

namespace quillon {
namespace {

constexpr unsigned long kSettleMilliseconds = 500;

}  // namespace

CQuillonApp::CQuillonApp(int& argc, char** argv) : QApplication(argc, argv) {
  setApplicationName(QStringLiteral("Quillon"));
  setApplicationVersion(ReadInstalledVersion().text);
  setDesktopFileName(QStringLiteral("quillon"));
}

int CQuillonApp::Run() {
  const SingleInstance instance;
  if (instance.IsTaken()) {
    ExchangeGate gate;
    MessageBoxes(gate).Message(nullptr, QStringLiteral("Application already running!"),
                               QStringLiteral("Quillon"), UserPrompts::Icon::kNone);
    return 0;
  }
  OpenedLibrary opened(applicationDirPath());
  Profile profile;
  BoardLink link(opened.Library());
  MessageBoxes prompts(link.gate);
  QStringList problems{QString::fromStdString(instance.Problem()), opened.Problem(),
                       profile.Problem()};
  problems.removeAll(QString());
  if (!problems.isEmpty()) {
    prompts.Message(nullptr, problems.join(QLatin1Char('\n')), QStringLiteral("Quillon"),
                    UserPrompts::Icon::kExclamation);
  }
  const auto notifier = MakeBoardNotifier(opened.Library());
  const auto fetch = MakeFetch();
  const UpdateServices updates{*fetch, [](const QString& address) { OpenInBrowser(address); },
                               ReadInstalledVersion().numbers};
  CMainDialog dialog({link, prompts, *notifier, profile,
                      [] { QThread::msleep(kSettleMilliseconds); }, updates,
                      [](const QString& path) { return OpenDocument(path); }, SystemAccessHelp()});
  // Later, because trouble comes in the middle of an exchange. The library outlives the window.
  opened.SetWhenInTrouble([window = QPointer<CMainDialog>(&dialog)] {
    if (!window) return;
    QMetaObject::invokeMethod(window.data(), &CMainDialog::ShowProblems, Qt::QueuedConnection);
  });
  dialog.show();
  const int result = exec();
  leaves_work_behind_ = fetch->LeavesWorkBehind();
  return result;
}

}  // namespace quillon
