// SPDX-License-Identifier: MIT
#include "app/CHomePage.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "res/Icons.h"

namespace quillon {
namespace {

constexpr int kImageSize = 48;

}  // namespace

CHomePage::CHomePage(QWidget* parent) : QTabWidget(parent), hint_(new QLabel) {
  auto* const page = new QWidget;
  auto* const layout = new QVBoxLayout(page);
  layout->addStretch(1);
  hint_->setAlignment(Qt::AlignCenter);
  hint_->setWordWrap(true);
  layout->addWidget(hint_);
  layout->addSpacing(16);
  auto* const row = new QHBoxLayout;
  layout->addLayout(row);
  auto* const refresh = new QPushButton(Icon("refresh"), QString());
  refresh->setIconSize({kImageSize, kImageSize});
  refresh->setAccessibleName(tr("Refresh Device List"));
  refresh->setToolTip(tr("Closes all boards and looks for them again."));
  connect(refresh, &QPushButton::clicked, this, &CHomePage::RefreshRequested);
  row->addStretch(1);
  row->addWidget(refresh);
  row->addWidget(new QLabel(tr("Refresh Device List")));
  row->addStretch(1);
  layout->addStretch(2);
  addTab(page, Icon("tab-home"), QStringLiteral("Quillon"));
  ShowBoardCount(0);
}

void CHomePage::ShowSearch() { hint_->setText(tr("Looking for boards ...")); }

void CHomePage::ShowBoardCount(std::uint32_t count) {
  hint_->setText(count == 0 ? tr("No board was found.\nPlug one in, or look again.")
                            : tr("This board has no settings that Quillon knows.\n"
                                 "Choose another one on the left."));
}

}  // namespace quillon
