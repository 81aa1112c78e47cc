// SPDX-License-Identifier: MIT
#pragma once

#include <QGroupBox>
#include <QString>
#include <optional>

#include "firmware/DeviceReport.h"
#include "firmware/KvxImage.h"
#include "pages/common/FlashControls.h"
#include "pages/common/FlashRun.h"
#include "pages/common/PageContext.h"

class QMimeData;
class QPushButton;

namespace quillon {

class CPathLabel;

// The "Flash Update" group: the firmware file, and its way into the board. Keeps the loaded file
// until another one is loaded, whatever becomes of the board or the run. The state of the page is
// kept here, as most of what changes it happens here.
class CFlashGroup : public QGroupBox {
  Q_OBJECT

 public:
  // `run` is for the flash updates.
  explicit CFlashGroup(PageContext context, QWidget* parent = nullptr);

  const FlashPageState& State() const { return state_; }
  FlashBoards Boards() const { return flash_run_.Boards(); }

  // Takes the report on the current board; nothing without boards.
  void TakeReport(const std::optional<DeviceReport>& report);

  // Enables the controls as the state says, with tool tips that say why.
  void ShowControls();

  // Whether what is dragged over the page is a file that could be loaded now.
  bool CanTake(const QMimeData& dragged) const { return FileIn(dragged).has_value(); }
  // Loads such a file once the drop has been answered. False if it is none.
  bool Take(const QMimeData& dropped);

 Q_SIGNALS:
  void StateChanged();
  // The "Execute" button: restart the board with its new firmware.
  void ExecuteRequested();

 private:
  void SetMoment(FlashMoment moment);

  void OnLoadFile();
  std::optional<QString> FileIn(const QMimeData& dragged) const;
  void LoadDropped(const QString& path);
  void UnloadFile();
  void LoadFile(const QString& path);

  void OnProgram();
  void OnAbort();
  void Program();
  void ShowWrongDevice();
  void ShowCompleted();
  void ShowStopped(bool failed);

  PageContext context_;
  StackRun& run_;
  FlashPageState state_;
  KvxImage image_;
  CReportText* log_;
  CPathLabel* file_;
  CFlashProgress* progress_;
  QPushButton* program_button_ = nullptr;
  QPushButton* execute_button_ = nullptr;
  QPushButton* load_button_ = nullptr;
  FlashRun flash_run_;
};

}  // namespace quillon
