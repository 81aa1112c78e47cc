// SPDX-License-Identifier: MIT
#include "tour/Tour.h"

#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <cstring>

#include "devlink/DeviceText.h"
#include "pages/common/CPageSet.h"
#include "pages/common/CSettingsPage.h"
#include "stage/Hands.h"
#include "stage/Picture.h"
#include "stage/Surroundings.h"
#include "tree/CDeviceTreeCtrl.h"
#include "widgets/CGridCtrl.h"
#include "widgets/CStatusLed.h"

namespace quillon {
namespace {

constexpr std::uint16_t kJoystickController = 0x0910;
constexpr std::uint16_t kPortsController = 0x0510;

QString LabelOf(const DeviceRecord& record) { return QString::fromStdString(BoardLabel(record)); }

QString Shown(const CGridCtrl& grid, int row, int column) {
  if (!IsToggle(grid.Kind(row, column)))
    return QStringLiteral("\"%1\"").arg(grid.Text(row, column));
  return grid.Value(row, column) != 0 ? QStringLiteral("on") : QStringLiteral("off");
}

qsizetype Differing(const QStringList& cells, const QStringList& others) {
  qsizetype count = std::abs(cells.size() - others.size());
  for (qsizetype i = 0; i < std::min(cells.size(), others.size()); ++i) {
    if (cells[i] != others[i]) ++count;
  }
  return count;
}

}  // namespace

Tour::Tour(const QDir& folder)
    : folder_(folder),
      transcript_(folder.absoluteFilePath(QStringLiteral("transcript.txt"))),
      attendant_([this](QWidget& opened) { Attend(opened); }) {
  stage::UseFreshState(folder.absoluteFilePath(QStringLiteral("boards")));
}

void Tour::Run() {
  transcript_.Line(QStringLiteral("Quillon %1: a tour on simulated boards. The message boxes are "
                                  "the program's own; the tour reads and answers them.")
                       .arg(QApplication::applicationVersion()));
  try {
    OpenProgram();
    ChooseJoystickController();
    OpenAnalogChannels();
    RetrieveFirst();
    EditCells();
    UpdateBoard();
    CloseProgram();
    OpenProgram();
    ChooseJoystickController();
    OpenAnalogChannels();
    RetrieveAgain();
    AskForPageDefaults();
    LoadDeviceDefaults();
    ChooseTooNewBoard();
    ChooseFlashBoard();
    CloseProgram();
  } catch (const std::exception& problem) {
    transcript_.Note(QStringLiteral("FAILED: ") + QString::fromUtf8(problem.what()));
    throw;
  }
  transcript_.Line(QStringLiteral("\nThe tour saw everything that it should see."));
}

void Tour::OpenProgram() {
  ++runs_;
  transcript_.Step(runs_ == 1 ? QStringLiteral("Start Quillon")
                              : QStringLiteral("Start Quillon anew"));
  trace_ = folder_.absoluteFilePath(QStringLiteral("exchanges-%1.txt").arg(runs_));
  stage::UseTrace(trace_);
  program_ = std::make_unique<stage::Program>(stage::Settling::kAsUsual);
  NoteBoards();
  Picture(QStringLiteral("window"));
  Expect(!program_->Boards().IsEmpty(), QStringLiteral("there are boards"));
}

void Tour::CloseProgram() {
  transcript_.Step(QStringLiteral("Close the window"));
  program_.reset();
  transcript_.Note(QStringLiteral("Exchanges in this run: %1, all in %2")
                       .arg(stage::ExchangesIn(trace_))
                       .arg(QFileInfo(trace_).fileName()));
  Expect(!stage::SimulatorIsLoaded(),
         QStringLiteral("the library of the simulated boards is unloaded; what the boards keep is "
                        "in their state folder"));
}

void Tour::ChooseJoystickController() {
  transcript_.Step(QStringLiteral("Choose the joystick controller with the serial number 002"));
  ChooseBoard(BoardOf(kJoystickController, "002"));
  NoteReport();
  Picture(QStringLiteral("joystick-controller"));
}

void Tour::OpenAnalogChannels() {
  transcript_.Step(QStringLiteral("Open \"Analog Channels\""));
  CTabSet* const pages = program_->Window().ShownPageSet();
  Expect(pages != nullptr, QStringLiteral("the board has pages"));
  stage::ClickTab(*pages, QStringLiteral("Analog Channels"));
  NotePage();
  Picture(QStringLiteral("analog-channels"));
}

void Tour::RetrieveFirst() {
  transcript_.Step(QStringLiteral("Retrieve the settings from the board"));
  const QStringList before = Cells();
  Press(QStringLiteral("Retrieve"));
  Picture(QStringLiteral("retrieved"));
  retrieved_ = Cells();
  Expect(Differing(before, retrieved_) > 0,
         QStringLiteral("the page shows other values than before"));
}

void Tour::EditCells() {
  transcript_.Step(QStringLiteral("Edit cells"));
  Toggle(QStringLiteral("Analog 1"), QStringLiteral("Invert"));
  Toggle(QStringLiteral("Analog 5"), QStringLiteral("ON"));
  Toggle(QStringLiteral("Analog 5"), QStringLiteral("S2"));
  Pick(QStringLiteral("Analog 2"), QStringLiteral("Filter"), QStringLiteral("8"));
  Pick(QStringLiteral("Analog 1"), QStringLiteral("Resolution"), QStringLiteral("10 Bits"), true);
  Pick(QStringLiteral("AE SSI 1"), QStringLiteral("Centering Button"), QStringLiteral("Button 3"));
  NotePage();
  Picture(QStringLiteral("edited"));
  stored_ = Cells();
  // Six edits, and the channel that drove S2 before no longer does.
  Expect(Differing(retrieved_, stored_) == 7,
         QStringLiteral("seven cells differ from the board's"));
}

void Tour::UpdateBoard() {
  transcript_.Step(QStringLiteral("Update the board"));
  Press(QStringLiteral("Update"));
  Picture(QStringLiteral("updated"));
}

void Tour::RetrieveAgain() {
  transcript_.Step(QStringLiteral("Retrieve again and compare"));
  Expect(Differing(stored_, Cells()) > 0,
         QStringLiteral("the new page does not know the stored values by itself"));
  Press(QStringLiteral("Retrieve"));
  Picture(QStringLiteral("retrieved-again"));
  Expect(
      Differing(stored_, Cells()) == 0,
      QStringLiteral("the same values came back, in all %1 cells of the page").arg(stored_.size()));
}

void Tour::AskForPageDefaults() {
  transcript_.Step(QStringLiteral("Load the defaults of the page"));
  captions_.clear();
  stage::ClickButton(Page(), QStringLiteral("Defaults"));
  attendant_.Rethrow();
  NotePage();
  Picture(QStringLiteral("page-defaults"));
  Expect(captions_ == QStringList{QStringLiteral("Load Defaults")},
         QStringLiteral("one question was asked"));
  Expect(Differing(stored_, Cells()) > 0, QStringLiteral("the page shows other values"));
}

void Tour::LoadDeviceDefaults() {
  transcript_.Step(QStringLiteral("Load the default settings of the device by the context menu"));
  captions_.clear();
  chosen_entry_ = QStringLiteral("Load default settings");
  stage::OpenContextMenu(program_->Window().Tree(), program_->Boards().Current());
  attendant_.Rethrow();
  Expect(captions_ == QStringList{QStringLiteral("Load Defaults")},
         QStringLiteral("one question was asked"));
  // With node I/O systems in it, the rebuilt tree is back at the first board.
  ChooseJoystickController();
  OpenAnalogChannels();
  const QStringList defaults = Cells();
  Press(QStringLiteral("Retrieve"));
  Expect(Differing(defaults, Cells()) == 0, QStringLiteral("the board holds the defaults"));
}

void Tour::ChooseTooNewBoard() {
  transcript_.Step(QStringLiteral("Choose a board with firmware that is too new"));
  captions_.clear();
  ChooseBoard(BoardOf(kPortsController, "002"));
  NoteReport();
  Picture(QStringLiteral("too-new-firmware"));
  Expect(captions_ == QStringList{QStringLiteral("Incompatible Version Detected")},
         QStringLiteral("one box says that the firmware is too new"));
}

void Tour::ChooseFlashBoard() {
  transcript_.Step(QStringLiteral("Choose the board in Flash Mode"));
  const DeviceTable& boards = program_->Boards();
  std::uint32_t board = 0;
  while (board < boards.Count() && boards.Type(board) != KVUSB_TYPE_LOADER) ++board;
  Expect(board < boards.Count(), QStringLiteral("there is a board in Flash Mode"));
  ChooseBoard(board);
  NoteReport();
  Picture(QStringLiteral("flash-mode"));
}

void Tour::ChooseBoard(std::uint32_t board) {
  stage::ClickBoard(program_->Window().Tree(), board);
  attendant_.Rethrow();
  Expect(program_->Boards().Current() == board,
         QStringLiteral("the current board is %1").arg(LabelOf(program_->Boards().Record(board))));
}

std::uint32_t Tour::BoardOf(std::uint16_t product_id, const char* serial) const {
  const DeviceTable& boards = program_->Boards();
  for (std::uint32_t i = 0; i < boards.Count(); ++i) {
    const DeviceRecord& record = boards.Record(i);
    if (record.product_id == product_id && std::strcmp(record.serial_number, serial) == 0) return i;
  }
  throw std::runtime_error("The boards of the tour are not there.");
}

void Tour::Press(const QString& button) {
  const int before = stage::ExchangesIn(trace_);
  stage::ClickButton(Page(), button);
  attendant_.Rethrow();
  transcript_.Note(QStringLiteral("Pressed %1; exchanges: %2")
                       .arg(button)
                       .arg(stage::ExchangesIn(trace_) - before));
  NotePage();
  Expect(!stage::Named<CStatusLed>(Page(), QStringLiteral("Error")).IsLit(),
         QStringLiteral("no error"));
}

void Tour::Toggle(const QString& row, const QString& column) {
  CGridCtrl& grid = Grid();
  const int r = stage::RowOf(grid, row);
  const int c = stage::ColumnOf(grid, column);
  const QString before = Shown(grid, r, c);
  stage::ClickCell(grid, r, c);
  transcript_.Note(
      QStringLiteral("Clicked %1, %2: %3, was %4").arg(row, column, Shown(grid, r, c), before));
}

void Tour::Pick(const QString& row, const QString& column, const QString& choice, bool picture) {
  CGridCtrl& grid = Grid();
  const int r = stage::RowOf(grid, row);
  const int c = stage::ColumnOf(grid, column);
  const QString before = Shown(grid, r, c);
  stage::ClickCell(grid, r, c);
  if (picture) Picture(QStringLiteral("choices"));
  stage::ClickChoice(grid, choice);
  transcript_.Note(QStringLiteral("Picked from the list of %1, %2: %3, was %4")
                       .arg(row, column, Shown(grid, r, c), before));
}

CSettingsPage& Tour::Page() {
  auto* const pages = program_->Window().ShownPageSet();
  auto* const page = pages == nullptr ? nullptr : pages->Page(pages->currentIndex());
  if (page == nullptr) throw std::runtime_error("No settings page is shown.");
  return *page;
}

CGridCtrl& Tour::Grid() {
  return stage::Named<CGridCtrl>(Page(), QStringLiteral("Analog channels"));
}

QStringList Tour::Cells() {
  const CGridCtrl& grid = Grid();
  QStringList cells;
  for (int row = 1; row < grid.Rows(); ++row) {
    for (int column = 1; column < grid.Columns(); ++column) {
      cells << QString::number(grid.Value(row, column)) + QLatin1Char(' ') + grid.Text(row, column);
    }
  }
  return cells;
}

void Tour::Attend(QWidget& opened) {
  if (auto* const box = qobject_cast<QMessageBox*>(&opened)) return AttendBox(*box);
  if (auto* const menu = qobject_cast<QMenu*>(&opened)) return AttendMenu(*menu);
  throw std::runtime_error("Nobody expected \"" + opened.windowTitle().toStdString() + "\".");
}

void Tour::AttendBox(QMessageBox& box) {
  captions_ << box.windowTitle();
  transcript_.Note(QStringLiteral("A box \"%1\":\n%2").arg(box.windowTitle(), box.text()));
  Picture(QStringLiteral("box"));
  transcript_.Note(QStringLiteral("Answered: %1").arg(stage::Consent(box)));
}

void Tour::AttendMenu(QMenu& menu) {
  QString entries;
  for (const QAction* const entry : menu.actions()) {
    if (entry->isSeparator()) continue;
    entries += QLatin1Char('\n') + entry->text();
    if (!entry->isEnabled()) entries += QStringLiteral(" (disabled: %1)").arg(entry->toolTip());
  }
  transcript_.Note(QStringLiteral("A menu \"%1\":").arg(menu.title()) + entries);
  Picture(QStringLiteral("context-menu"));
  transcript_.Note(QStringLiteral("Chosen: %1").arg(chosen_entry_));
  stage::ClickEntry(menu, chosen_entry_);
}

void Tour::NoteBoards() {
  const DeviceTable& boards = program_->Boards();
  QString list = QStringLiteral("Boards in the tree: %1").arg(boards.Count());
  for (std::uint32_t i = 0; i < boards.Count(); ++i) {
    list += QLatin1Char('\n') + LabelOf(boards.Record(i));
    if (boards.Type(i) == KVUSB_TYPE_LOADER) list += QStringLiteral(" (Flash Mode)");
    if (i == boards.Current()) list += QStringLiteral(" (current)");
  }
  transcript_.Note(list);
}

void Tour::NoteReport() {
  const auto& report =
      stage::Named<QPlainTextEdit>(program_->Window(), QStringLiteral("Report on the board"));
  transcript_.Note(QStringLiteral("The report:\n") + report.toPlainText());
}

void Tour::NotePage() {
  CSettingsPage& page = Page();
  transcript_.Note(
      QStringLiteral("The page says: %1 Lamps: Busy %2, Error %3")
          .arg(stage::Named<QLabel>(page, QStringLiteral("Where the values come from")).text(),
               stage::Named<CStatusLed>(page, QStringLiteral("Busy")).accessibleDescription(),
               stage::Named<CStatusLed>(page, QStringLiteral("Error")).accessibleDescription()));
}

void Tour::Picture(const QString& name) {
  const QString file =
      QStringLiteral("%1-%2.png").arg(++pictures_, 2, 10, QLatin1Char('0')).arg(name);
  stage::SavePicture(stage::PictureOf(program_->Window()), folder_.absoluteFilePath(file));
  transcript_.Note(QStringLiteral("Picture: ") + file);
}

void Tour::Expect(bool seen, const QString& claim) {
  if (!seen) throw std::runtime_error("This is not so: " + claim.toStdString() + ".");
  transcript_.Note(QStringLiteral("Seen: ") + claim);
}

}  // namespace quillon
