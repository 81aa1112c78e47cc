// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <string_view>

#include "devlink/BoardIdentity.h"
#include "devlink/BoardLink.h"
#include "firmware/FlashUpdate.h"
#include "pages/common/FlashTips.h"

namespace quillon {

class CFlashProgress;
class CReportText;
class StackRun;

// The flash update as a user follows it: it writes the log, moves the bar and lets "Abort" through
// after each record. Remembers which board the last one was about.
class FlashRun : private FlashObserver {
 public:
  // All of them outlive the object's last update. An update is a run of one item.
  FlashRun(BoardLink& link, StackRun& run, CReportText& log, CFlashProgress& progress);

  // Writes the image into the current board. To be called from the work of the run.
  FlashResult Update(const KvxImage& image);

  // The current board, and that of the last update.
  FlashBoards Boards() const;

 private:
  void OnText(std::string_view text) override;
  void OnProgressRange(int records) override;
  void OnProgress(int position) override;
  bool AbortRequested() override;
  void Pump() override;

  BoardLink& link_;
  StackRun& run_;
  CReportText& log_;
  CFlashProgress& progress_;
  BoardIdentity board_;  // what the last update was about
  QString name_;
};

}  // namespace quillon
