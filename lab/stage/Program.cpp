// SPDX-License-Identifier: MIT
#include "stage/Program.h"

#include <QCoreApplication>
#include <QFile>
#include <QTest>
#include <QThread>
#include <stdexcept>
#include <utility>

#include "stage/Hands.h"

namespace quillon::stage {
namespace {

constexpr unsigned long kSettleMilliseconds = 500;

}  // namespace

Program::Program(Settling settling, Refusals refusals, AccessHelp access)
    : settling_(settling),
      opened_(QCoreApplication::applicationDirPath()),
      boards_(opened_.Library(), std::move(refusals)),
      link_(boards_),
      prompts_(link_.gate),
      notifier_(boards_),
      window_({link_,
               prompts_,
               notifier_,
               profile_,
               [this] { Settle(); },
               {*fetch_, [](const QString&) {}, {}},
               [](const QString&) { return false; },
               std::move(access)}) {
  if (!opened_.Problem().isEmpty()) throw std::runtime_error(opened_.Problem().toStdString());
  window_.show();
  window_.activateWindow();
  AwaitBoards();
}

Program::~Program() { window_.close(); }

void Program::Settle() {
  detecting_ = true;
  if (settling_ == Settling::kAsUsual) QThread::msleep(kSettleMilliseconds);
}

// The window starts the first detection by itself; until then it has no boards to wait for.
void Program::AwaitBoards() {
  const bool detected = QTest::qWaitForWindowExposed(&window_) &&
                        QTest::qWaitFor([this] { return detecting_ && link_.gate.IsOpen(); });
  if (!detected) throw std::runtime_error("The window does not come to a first detection.");
  LetPaint();
}

bool SimulatorIsLoaded() {
  QFile maps(QStringLiteral("/proc/self/maps"));
  return !maps.open(QIODevice::ReadOnly) || maps.readAll().contains("libkvusb-sim");
}

}  // namespace quillon::stage
