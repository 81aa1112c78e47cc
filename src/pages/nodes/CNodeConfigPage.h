// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "firmware/KvxImage.h"
#include "pages/common/PageContext.h"
#include "pages/nodes/NodeRun.h"

class QBoxLayout;
class QCheckBox;
class QLabel;
class QPushButton;

namespace quillon {

class CNodeList;
class CPathLabel;

// "Node Configuration": the nodes of a board with the state of their firmware, and the update of
// those that are checked from one file, through the board.
class CNodeConfigPage : public QWidget {
  Q_OBJECT

 public:
  explicit CNodeConfigPage(PageContext context, QWidget* parent = nullptr);

  // Shows what the table knows of the current board's nodes. Asks no board.
  void ShowNodes();
  // Asks the current board first. Without an answer the list stays as it is. The caller holds the
  // gate.
  void RefreshList();

 Q_SIGNALS:
  // While nodes are programmed no other page may be chosen; true at its beginning.
  void PagesLocked(bool locked);
  // The records of the nodes have changed: the board was asked, or nodes were programmed.
  void NodesChanged();

 private:
  // What last set the controls.
  enum class Moment {
    kIdle,
    kRunning,   // "Program" reads "Abort"
    kStopping,  // "Abort" was pressed, but the node's record is still under way
    kSkipped,   // a node was skipped; intended: from then on the run cannot be aborted
  };

  void AddButtons(QBoxLayout* column);
  void SetMoment(Moment moment);
  void ShowControls();
  QString ProgramTip() const;
  void ShowLine(const QString& line, bool about_list = false);

  void OnRefresh();
  void OnLoadFile();
  void LoadFile(const QString& path);
  void OnProgram();
  void Program();

  PageContext context_;
  CNodeList* list_;
  QLabel* line_;
  CPathLabel* file_;
  QCheckBox* force_;
  QPushButton* refresh_button_ = nullptr;
  QPushButton* program_button_ = nullptr;
  QPushButton* load_button_ = nullptr;
  NodeRun node_run_;
  KvxImage image_;
  QString last_file_;  // for the next choice
  // A file can be programmed once; then it has to be loaded again.
  bool file_loaded_ = false;
  bool line_is_about_list_ = false;  // and goes when the list is filled anew
  Moment moment_ = Moment::kIdle;
};

}  // namespace quillon
