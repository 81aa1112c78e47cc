// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <optional>

#include "devlink/BoardIdentity.h"
#include "firmware/FlashUpdate.h"
#include "pages/common/FlashControls.h"
#include "pages/common/FlashTips.h"
#include "pages/common/PageContext.h"

class QMimeData;

namespace quillon {

class CDeviceConfigGroup;
class CFlashGroup;
class StackRun;

// The first tab of every family: the report on the board, its serial number and restart (the Device
// Configuration group), and its firmware (the Flash Update group). The page keeps the loaded file
// until another one is loaded, whatever becomes of the board or the run.
//
// A flash update is a run of one item, which turns the event loop after each record.
class CDeviceConfigPage : public QWidget, private FlashObserver {
  Q_OBJECT

 public:
  // `device_mode` is the device type that counts as Device Mode in the family; `run` is for the
  // flash updates.
  CDeviceConfigPage(PageContext context, std::uint32_t device_mode, StackRun& run,
                    QWidget* parent = nullptr);

  // Rebuilds the report on the current board and enables the page's controls accordingly; without
  // boards, shows the empty form. Shows a message when the firmware is newer than this program
  // knows.
  void ShowDeviceInfo();

 Q_SIGNALS:
  // What the other tabs of the family depend on. Not sent without boards.
  void BoardReported(bool flash_mode_active, bool firmware_suits);
  // The "Refresh" button: close all boards and detect them again.
  void RefreshRequested();

 protected:
  void showEvent(QShowEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void ConnectButtons();

  // Enables the controls as the state says, with tool tips that say why.
  void ShowControls();
  void SetMoment(FlashMoment moment);
  FlashBoards Boards() const;

  void OnLoadFile();
  void LoadDropped(const QString& path);
  std::optional<QString> DroppedFile(const QMimeData* dropped) const;
  void UnloadFile();
  void LoadFile(const QString& path);
  void OnProgram();
  void OnAbort();
  void RunFlashUpdate();
  void ShowWrongDevice();
  void ShowCompleted();
  void ShowStopped(bool failed);

  void OnText(std::string_view text) override;
  void OnProgressRange(int records) override;
  void OnProgress(int position) override;
  bool AbortRequested() override;
  void Pump() override;

  PageContext context_;
  StackRun& run_;
  FlashPageState state_;
  KvxImage image_;
  BoardIdentity run_board_;  // what the last run was about
  QString run_name_;
  CDeviceConfigGroup* device_group_;
  CFlashGroup* flash_group_;
};

}  // namespace quillon
