// SPDX-License-Identifier: MIT
#include "bench/PageRefresh.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>
#include <cstdio>

#include "bench/BareViews.h"
#include "bench/Figures.h"
#include "bench/PaintedView.h"
#include "devlink/Detection.h"
#include "pages/common/StackRun.h"
#include "pages/common/UserPrompts.h"
#include "pages/joystick/CScanMatrixChannelsPage.h"
#include "widgets/CGridCtrl.h"

namespace quillon::bench {
namespace {

constexpr int kRows = 64;
constexpr int kColumns = 8;
constexpr double kGoal = 1.2;
// Bytes that are good settings wherever they stand, and differ in all fields but one.
constexpr std::uint8_t kAnswers[]{0x11, 0x02};
constexpr int kRepeats = 20;  // in one run, as one alone is short

class NoPrompts : public UserPrompts {
 public:
  void Message(QWidget* /*parent*/, const QString& /*text*/, const QString& /*caption*/,
               Icon /*icon*/) override {}
  bool AskYesNo(QWidget* /*parent*/, const QString& /*text*/, const QString& /*caption*/,
                Icon /*icon*/) override {
    return true;
  }
  std::optional<QString> OpenFile(QWidget* /*parent*/, const QString& /*caption*/,
                                  const QString& /*suffix*/, const QString& /*filter*/,
                                  const QString& /*chosen*/) override {
    return std::nullopt;
  }
};

// All rows in sight on both sides, in cells of one size.
void LayOut(CScanMatrixChannelsPage& page, const CGridCtrl& grid, QTableView& bare) {
  const int height = grid.verticalHeader()->defaultSectionSize();
  page.resize(page.sizeHint().width(), (kRows + 12) * height);
  page.show();
  bare.verticalHeader()->setDefaultSectionSize(height);
  for (int column = 0; column < kColumns; ++column) {
    bare.setColumnWidth(column, grid.columnWidth(column));
  }
  bare.resize(grid.size());
  bare.show();
  QCoreApplication::processEvents();
}

}  // namespace

bool MeasurePageRefresh(int rounds, HidLibrary& library) {
  BoardLink link(library);
  DetectBoards(library, link.table, KVUSB_TYPE_FIRMWARE);
  NoPrompts prompts;
  StackRun run(link.gate);
  CScanMatrixChannelsPage page({link, prompts, run},
                               *FindPage(BoardFamily::kScanMatrix, "digital"));
  auto& grid = *page.findChild<CGridCtrl*>();
  QTableView bare;
  BareTableModel model(kRows, kColumns, &bare);
  bare.setModel(&model);
  LayOut(page, grid, bare);

  PaintedView painted_grid(grid);
  PaintedView painted_bare(bare);
  const auto refresh_ours = [&] {
    for (int i = 0; i < kRepeats; ++i) {
      link.table.CurrentRecord().library_a[0] = kAnswers[i % 2];
      page.Retrieve();
      painted_grid.Paint();
    }
  };
  const auto refresh_bare = [&] {
    for (int i = 0; i < kRepeats; ++i) {
      model.Fill(kAnswers[i % 2]);
      painted_bare.Paint();
    }
  };
  const Pair times = MeasureInTurn(rounds, refresh_ours, refresh_bare);
  const int push = kColumns - 2;
  if (grid.Rows() != kRows + 1 || grid.Columns() != kColumns + 1 ||
      grid.Text(1, push) != QStringLiteral("Button 2") || grid.verticalScrollBar()->maximum() > 0 ||
      !painted_grid.Check() || !painted_bare.Check()) {
    std::fprintf(stderr, "the page does not show what was answered, or not all of it\n");
    return false;
  }
  PrintRatio("64-row page: 20 x answer to painted", "ms", times, kGoal);
  return true;
}

}  // namespace quillon::bench
