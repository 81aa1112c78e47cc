// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QStringList>
#include <memory>

#include "stage/Attendant.h"
#include "stage/Program.h"
#include "tour/Transcript.h"

class QMenu;
class QMessageBox;

namespace quillon {

class CGridCtrl;
class CSettingsPage;

// The main job from end to end, as a user does it: choose a board, retrieve, edit, update, close
// the program, start it again and find the same settings; then what else the window offers. Leaves
// a transcript, numbered pictures and the traces of the exchanges in a folder.
class Tour {
 public:
  explicit Tour(const QDir& folder);

  // Throws std::runtime_error at the first thing that is not as it should be; the transcript says
  // so too.
  void Run();

 private:
  void OpenProgram();
  void CloseProgram();
  void ChooseJoystickController();
  void OpenAnalogChannels();
  void RetrieveFirst();
  void EditCells();
  void UpdateBoard();
  void RetrieveAgain();
  void AskForPageDefaults();
  void LoadDeviceDefaults();
  void ChooseTooNewBoard();
  void ChooseFlashBoard();

  void ChooseBoard(std::uint32_t board);
  std::uint32_t BoardOf(std::uint16_t product_id, const char* serial) const;
  void Press(const QString& button);
  void Toggle(const QString& row, const QString& column);
  void Pick(const QString& row, const QString& column, const QString& choice, bool picture = false);
  CSettingsPage& Page();
  CGridCtrl& Grid();
  // What every cell of the page shows and holds.
  QStringList Cells();

  void Attend(QWidget& opened);
  void AttendBox(QMessageBox& box);
  void AttendMenu(QMenu& menu);

  void NoteBoards();
  void NoteReport();
  void NotePage();
  void Picture(const QString& name);
  void Expect(bool seen, const QString& claim);

  QDir folder_;
  Transcript transcript_;
  stage::Attendant attendant_;
  std::unique_ptr<stage::Program> program_;
  QString trace_;
  int runs_ = 0;
  int pictures_ = 0;
  QString chosen_entry_;  // what is chosen from the next menu
  QStringList captions_;  // of the boxes seen since the step began
  QStringList retrieved_;
  QStringList stored_;
};

}  // namespace quillon
