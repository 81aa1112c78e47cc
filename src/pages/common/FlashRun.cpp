// SPDX-License-Identifier: MIT
#include "pages/common/FlashRun.h"

#include "devlink/DeviceText.h"
#include "pages/common/CFlashProgress.h"
#include "pages/common/CReportText.h"
#include "pages/common/StackRun.h"

namespace quillon {
namespace {

// For the middle of a sentence.
QString NameOf(const DeviceRecord& board) {
  const QString label = QString::fromStdString(BoardLabel(board)).trimmed();
  return label.startsWith(':') ? QStringLiteral("Board ") + label : label;
}

}  // namespace

FlashRun::FlashRun(BoardLink& link, StackRun& run, CReportText& log, CFlashProgress& progress)
    : link_(link), run_(run), log_(log), progress_(progress) {}

FlashResult FlashRun::Update(const KvxImage& image) {
  board_ = CurrentBoard(link_.table);
  name_ = NameOf(link_.table.CurrentRecord());
  return FlashUpdate(link_.library, link_.table.CurrentRecord(), image, *this).Run();
}

FlashBoards FlashRun::Boards() const {
  FlashBoards boards{NameOf(link_.table.CurrentRecord()), name_,
                     name_.isEmpty() || board_ == CurrentBoard(link_.table)};
  if (!boards.same && boards.of_run == boards.selected) {
    boards.of_run = QStringLiteral("Another board of the same name, %1,").arg(name_);
  }
  return boards;
}

void FlashRun::OnText(std::string_view text) {
  log_.Append(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
  log_.viewport()->repaint();
}

void FlashRun::OnProgressRange(int records) { progress_.Begin(records); }

void FlashRun::OnProgress(int position) { progress_.Advance(position); }

bool FlashRun::AbortRequested() { return run_.IsToStop(); }

void FlashRun::Pump() { run_.TurnEventLoop(); }

}  // namespace quillon
