// SPDX-License-Identifier: MIT
#include "app/CHomePage.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <QMouseEvent>

#include "app/CImageButton.h"
#include "pages/common/Vendor.h"
#include "res/Icons.h"
#include "widgets/CScrollPane.h"

namespace quillon {
namespace {

// The words beside a button. A click on them is one on the button.
class Caption : public QLabel {
 public:
  Caption(const QString& text, QPushButton& button) : QLabel(text), button_(button) {
    setToolTip(button.toolTip());
  }

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton) return QLabel::mousePressEvent(event);
    button_.setFocus(Qt::MouseFocusReason);
    button_.setDown(true);
  }
  // As with the button itself, who moves away before releasing has thought better of it.
  void mouseMoveEvent(QMouseEvent* event) override {
    if ((event->buttons() & Qt::LeftButton) != 0) {
      button_.setDown(rect().contains(event->position().toPoint()));
    }
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton && button_.isDown()) button_.click();
  }

 private:
  QPushButton& button_;
};

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
  row->addStretch(1);
  buttons_ = new QGridLayout;
  buttons_->setHorizontalSpacing(16);
  row->addLayout(buttons_);
  row->addStretch(1);
  layout->addStretch(2);
  AddButtons();
  // A small window with a problem to report has no room for all of it.
  addTab(new CScrollPane(page), Icon("tab-home"), QStringLiteral("Quillon"));
  ShowBoardCount(0);
}

// The window's menus have Alt with F, T and H, and the line above the pages has it with C, I and U.
// Among the letters left, none goes below the line, where it would run into its mark.
void CHomePage::AddButtons() {
  AddButton("refresh", tr("&Refresh"), tr("Refresh Device List"),
            tr("Closes all boards and looks for them again."), &CHomePage::RefreshRequested);
  AddButton("updates", tr("Up&dates"), tr("Check for updates"),
            tr("Asks the vendor's web site for a newer version of Quillon."),
            &CHomePage::UpdatesRequested);
  AddButton("help", tr("H&elp"), tr("Read Help File"), tr("Opens quillon.pdf."),
            &CHomePage::HelpRequested);
  AddButton("web", tr("He&lp"), tr("Visit ") + VendorName(),
            tr("Opens %1 in the browser.").arg(VendorWebSite()), &CHomePage::WebSiteRequested);
}

void CHomePage::AddButton(const char* image, const QString& text, const QString& caption,
                          const QString& tip, void (CHomePage::*request)()) {
  auto* const button = new CImageButton(Icon(image), text);
  button->setAccessibleName(caption);  // two buttons have the same text
  button->setToolTip(tip);
  connect(button, &QPushButton::clicked, this, request);
  const int row = buttons_->rowCount();
  buttons_->addWidget(button, row, 0);
  buttons_->addWidget(new Caption(caption, *button), row, 1);
}

void CHomePage::ShowSearch() { hint_->setText(tr("Looking for boards ...")); }

void CHomePage::ShowBoardCount(std::uint32_t count) {
  hint_->setText(count == 0 ? tr("No board was found.\nPlug one in, or look again.")
                            : tr("This board has no settings that Quillon knows.\n"
                                 "Choose another one on the left."));
}

}  // namespace quillon
