// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QStringList>
#include <cstdint>

#include "stage/Attendant.h"
#include "stage/Program.h"

class QMenu;
class QPixmap;

namespace quillon {

class CTabSet;

// Pictures of all that the window can show: every board of the usual rig with every enabled tab,
// retrieved where there is something to retrieve, and other states of the window. Files are named
// NN-subject<suffix>.png; NN is the board's place in the table, counted from 1, or 00 for what
// belongs to no board. One of a tab alone, NN-subject-page<suffix>.png, is taken only when wanted.
class Screenshots {
 public:
  // `own` is the folder for the files of the rigs. With `wanted`, names of files, only these are
  // taken.
  Screenshots(const QDir& folder, const QString& suffix, const QDir& own, QStringList wanted);

  // Throws std::runtime_error when something cannot be shown, or a wanted picture is none of these.
  void TakeAll();

  int Taken() const { return taken_; }

 private:
  // Starts the program on a rig, the usual one without a text, and runs `act` with its window.
  template <typename Act>
  void On(const QByteArray& rig, Act act, stage::Refusals refusals = {}, AccessHelp access = {});

  void TakeBoard(std::uint32_t board);
  void TakeTabs(CTabSet& pages);
  void TakeContextMenu();
  void TakeAboutBox();
  void TakeEditing();
  void TakeFailedRetrieve();
  void TakeRefusedBoards();
  void TakeHome();

  void Attend(QWidget& opened);
  void Take(const QString& what);
  void Save(const QPixmap& picture, const QString& file);
  QString FileOf(const QString& what) const;

  QDir folder_;
  QString suffix_;
  QString rig_file_;
  QStringList wanted_;
  QStringList left_;  // of those wanted
  stage::Attendant attendant_;
  stage::Program* program_ = nullptr;
  QString prefix_;  // of the pictures of the board that is shown
  int taken_ = 0;
};

}  // namespace quillon
