// SPDX-License-Identifier: MIT
#include "pages/common/CFlashGroup.h"

#include <QBoxLayout>
#include <QFileInfo>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTextDocument>

#include "pages/common/ButtonColumn.h"
#include "pages/common/CFlashProgress.h"
#include "pages/common/CReportText.h"
#include "pages/common/FirmwareFile.h"

namespace quillon {
namespace {

// A path, shortened in the middle where it is too long for its place.
class CPathLabel : public QLabel {
 public:
  explicit CPathLabel(const QString& text) : QLabel(text) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    const QRect place = contentsRect();
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideMiddle, place.width()));
  }
};

}  // namespace

CFlashGroup::CFlashGroup(QWidget* parent)
    : QGroupBox(tr("Flash Update"), parent),
      log_(new CReportText(tr("Log of the flash update"))),
      file_(new CPathLabel(QStringLiteral("File : "))),
      progress_(new CFlashProgress) {
  auto* const layout = new QHBoxLayout(this);
  auto* const left = new QVBoxLayout;
  layout->addLayout(left, 1);
  left->addWidget(log_, 1);
  left->addWidget(file_);
  left->addWidget(progress_);
  auto* const column = AddButtonColumn(layout);
  program_button_ = AddButton(column, tr("Program"));
  execute_button_ = AddButton(column, tr("Execute"));
  column->addStretch(1);
  load_button_ = AddButton(column, tr("Load..."));
  ShowNoFile();
}

void CFlashGroup::ShowFile(const QString& path, const QString& loaded) {
  const QString shown = ShownPath(path);
  file_->setText(QStringLiteral("File : ") + shown);
  file_->setToolTip(Qt::convertFromPlainText(shown));
  log_->setPlainText(QStringLiteral("File : %1 loaded.").arg(QFileInfo(shown).fileName()));
  progress_->ShowLoaded(loaded);
}

void CFlashGroup::ShowNoFile() { progress_->ShowLoaded(tr("No file is loaded.")); }

}  // namespace quillon
