// SPDX-License-Identifier: MIT
#include "screenshots/Screenshots.h"

#include <QDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>

#include "devlink/DeviceText.h"
#include "pages/common/CPageSet.h"
#include "pages/common/CSettingsPage.h"
#include "stage/Hands.h"
#include "stage/Picture.h"
#include "stage/Surroundings.h"
#include "tree/CDeviceTreeCtrl.h"
#include "widgets/CGridCtrl.h"

namespace quillon {
namespace {

constexpr const char* kNoBoards = R"({"boards": []})";
constexpr const char* kUnreadableBoard = R"({"boards": [
  {"id": "joystick-1", "product": "0x0910", "firmware": "2.82",
   "faults": [{"kind": "read_fails", "command": "0x11", "times": 0}]}
]})";

// Nodes are programmed while their board is in Flash Mode.
constexpr const char* kNodesInFlashMode = R"({"boards": [
  {"id": "nodes-1", "product": "0x0800", "mode": "flash", "firmware": "1.10", "queried": "1.13",
   "nodes": [{"node": 1, "flash": "1.30"}, {"node": 2, "flash": "1.20"},
             {"node": 3, "flash": "none"}, {"node": 4, "flash": "1.31"},
             {"node": 9, "flash": "1.30"}]}
]})";

Problem Locked(int node) {
  return {KVUSB_PROBLEM_PERMISSION, "Linux does not let you open /dev/hidraw" +
                                        std::to_string(node) + " (Permission denied)."};
}

// A machine with the rule in this state, whose user closes the question for the password.
AccessHelp HelpWith(RuleState state, const char* file) {
  return {[state, file] {
            return FoundRule{state, file};
          },
          [](const QStringList&, const std::function<void(const ElevatedResult&)>& done) {
            done({ElevatedEnd::kDismissed});
          }};
}

// "Joystick Controller (simulated) : 001" as a part of a file name.
QString FileName(QString label) {
  static const QRegularExpression others(QStringLiteral("[^a-z0-9]+"));
  label = label.remove(QStringLiteral("(simulated)")).toLower();
  return label.replace(others, QStringLiteral("-"));
}

CSettingsPage& ShownPage(const CMainDialog& window) {
  CTabSet* const pages = window.ShownPageSet();
  CSettingsPage* const page = pages == nullptr ? nullptr : pages->Page(pages->currentIndex());
  if (page == nullptr) throw std::runtime_error("No settings page is shown.");
  return *page;
}

}  // namespace

Screenshots::Screenshots(const QDir& folder, const QString& suffix, const QDir& own,
                         QStringList wanted)
    : folder_(folder),
      suffix_(suffix),
      rig_file_(own.absoluteFilePath(QStringLiteral("rig.json"))),
      wanted_(std::move(wanted)),
      left_(wanted_),
      attendant_([this](QWidget& opened) { Attend(opened); }) {}

template <typename Act>
void Screenshots::On(const QByteArray& rig, Act act, stage::Refusals refusals, AccessHelp access) {
  if (!rig.isEmpty()) stage::WriteFile(rig_file_, rig);
  stage::UseRig(rig.isEmpty() ? QString() : rig_file_);
  stage::Program program(stage::Settling::kNone, std::move(refusals), std::move(access));
  program_ = &program;
  prefix_ = QStringLiteral("00");
  act();
  program_ = nullptr;
}

void Screenshots::TakeAll() {
  On({}, [this] {
    for (std::uint32_t i = 0; i < program_->Boards().Count(); ++i) TakeBoard(i);
    prefix_ = QStringLiteral("00");
    stage::ClickBoard(program_->Window().Tree(), 0);
    TakeContextMenu();
    TakeAboutBox();
    TakeEditing();
  });
  On(kNodesInFlashMode, [this] { TakeBoard(0); });
  On(kUnreadableBoard, [this] { TakeFailedRetrieve(); });
  TakeRefusedBoards();
  On(kNoBoards, [this] { TakeHome(); });
  if (!left_.isEmpty()) {
    throw std::runtime_error("There is no picture " +
                             left_.join(QStringLiteral(", ")).toStdString() + '.');
  }
}

void Screenshots::TakeBoard(std::uint32_t board) {
  CMainDialog& window = program_->Window();
  prefix_ =
      QStringLiteral("%1-%2")
          .arg(board + 1, 2, 10, QLatin1Char('0'))
          .arg(FileName(QString::fromStdString(BoardLabel(program_->Boards().Record(board)))));
  stage::ClickBoard(window.Tree(), board);
  attendant_.Rethrow();
  CTabSet* const pages = window.ShownPageSet();
  if (pages == nullptr) return Take(QStringLiteral("no-pages"));
  TakeTabs(*pages);
  if (!stage::ClickPort(window.Tree(), board, 0, 1)) return;
  prefix_ += QStringLiteral("-port-b");
  TakeTabs(*window.ShownPageSet());
}

void Screenshots::TakeTabs(CTabSet& pages) {
  for (int tab = 0; tab < pages.count(); ++tab) {
    if (!pages.isTabEnabled(tab)) continue;
    const QString title = pages.tabText(tab);
    stage::ClickTab(pages, title);
    if (pages.Page(tab) != nullptr) {
      stage::ClickButton(*pages.Page(tab), QStringLiteral("Retrieve"));
    }
    Take(FileName(title));
    const QString alone = FileOf(FileName(title) + QStringLiteral("-page"));
    if (!wanted_.contains(alone)) continue;
    CMainDialog& window = program_->Window();
    Save(window.grab({pages.mapTo(&window, QPoint()), pages.size()}), alone);
  }
}

void Screenshots::TakeContextMenu() {
  stage::OpenContextMenu(program_->Window().Tree(), 0);
  attendant_.Rethrow();
}

void Screenshots::TakeAboutBox() {
  for (const QAction* const title : program_->Window().menuBar()->actions()) {
    if (title->text() == QLatin1String("&Help")) {
      stage::Entry(*title->menu(), QStringLiteral("About...")).trigger();
    }
  }
  attendant_.Rethrow();
}

void Screenshots::TakeEditing() {
  CMainDialog& window = program_->Window();
  stage::ClickTab(*window.ShownPageSet(), QStringLiteral("Analog Channels"));
  CSettingsPage& page = ShownPage(window);
  stage::ClickButton(page, QStringLiteral("Retrieve"));
  auto& grid = stage::Named<CGridCtrl>(page, QStringLiteral("Analog channels"));
  const int row = stage::RowOf(grid, QStringLiteral("Analog 3"));
  stage::ClickCell(grid, row, stage::ColumnOf(grid, QStringLiteral("Invert")));
  stage::ClickCell(grid, row, stage::ColumnOf(grid, QStringLiteral("Resolution")));
  Take(QStringLiteral("edited"));
  stage::ClickChoice(grid, QStringLiteral("8 Bits"));
}

void Screenshots::TakeFailedRetrieve() {
  CMainDialog& window = program_->Window();
  stage::ClickTab(*window.ShownPageSet(), QStringLiteral("Analog Channels"));
  // At once: the lamp blinks from now on.
  stage::Named<QPushButton>(ShownPage(window), QStringLiteral("Retrieve")).click();
  Take(QStringLiteral("retrieve-failed"));
}

void Screenshots::TakeRefusedBoards() {
  const stage::Refusals one{{0x0710, Locked(3)}};
  const stage::Refusals many{{0x0910, Locked(3)},
                             {0x0920, Locked(4)},
                             {0x0800, Locked(5)},
                             {0x1500, Locked(6)},
                             {0x0710, {KVUSB_PROBLEM_IN_USE, ""}},
                             {0x0520, {KVUSB_PROBLEM_OTHER, "/dev/hidraw9: Input/output error."}}};
  constexpr const char* kFile = "/etc/udev/rules.d/70-quillon.rules";
  On(
      {}, [this] { Take(QStringLiteral("may-not-open")); }, one, HelpWith(RuleState::kMissing, ""));
  On(
      {}, [this] { Take(QStringLiteral("may-not-open-yet")); }, one,
      HelpWith(RuleState::kCurrent, kFile));
  const auto dismiss = [this] {
    stage::ClickButton(program_->Window(), QStringLiteral("Update udev Rule"));
    Take(QStringLiteral("may-not-open-many"));
  };
  On({}, dismiss, many, HelpWith(RuleState::kOutdated, kFile));
}

void Screenshots::TakeHome() {
  Take(QStringLiteral("home"));
  program_->Window().resize(program_->Window().minimumSize());
  Take(QStringLiteral("home-smallest"));
}

void Screenshots::Attend(QWidget& opened) {
  if (auto* const box = qobject_cast<QMessageBox*>(&opened)) {
    Take(FileName(box->windowTitle()));
    stage::Consent(*box);
    return;
  }
  Take(qobject_cast<QMenu*>(&opened) != nullptr ? QStringLiteral("context-menu")
                                                : FileName(opened.windowTitle()));
  opened.close();
}

QString Screenshots::FileOf(const QString& what) const {
  return QStringLiteral("%1-%2%3.png").arg(prefix_, what, suffix_);
}

void Screenshots::Take(const QString& what) {
  const QString file = FileOf(what);
  if (wanted_.isEmpty() || wanted_.contains(file)) Save(stage::PictureOf(program_->Window()), file);
}

void Screenshots::Save(const QPixmap& picture, const QString& file) {
  left_.removeAll(file);
  stage::SavePicture(picture, folder_.absoluteFilePath(file));
  ++taken_;
}

}  // namespace quillon
