// SPDX-License-Identifier: MIT
#include "app/CAboutDlg.h"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>

#include "res/Icons.h"

namespace quillon {
namespace {

QString Disclaimer() {
  return QStringLiteral(
      "Disclaimer:\r\n\r\nTHIS SOFTWARE AND THE ACCOMPANYING FILES ARE PROVIDED 'AS IS' AND "
      "WITHOUT "
      "WARRANTIES AS TO PERFORMANCE WHETHER EXPRESSED OR IMPLIED.\r\n\r\nBecause of the various "
      "hardware and software environments into which Quillon may be put, there is NO WARRANTY OF "
      "OPERATION OR GUARANTEE THAT Quillon will work in all environments.\r\n\r\nThe user assumes "
      "the entire risk of using this software.");
}

}  // namespace

CAboutDlg::CAboutDlg(QWidget* parent) : QDialog(parent) {
  setWindowTitle(QStringLiteral("About Quillon"));
  auto* const layout = new QVBoxLayout(this);
  auto* const head = new QHBoxLayout;
  layout->addLayout(head);
  auto* const image = new QLabel;
  image->setPixmap(Icon("app").pixmap(48, 48));
  head->addWidget(image);
  auto* const version =
      new QLabel(QStringLiteral("Quillon Version %1").arg(QCoreApplication::applicationVersion()));
  version->setTextInteractionFlags(Qt::TextSelectableByMouse);
  head->addWidget(version, 1);

  auto* const text = new QPlainTextEdit(Disclaimer());
  text->setReadOnly(true);
  text->setTabChangesFocus(true);
  text->setAccessibleName(tr("Disclaimer"));
  // White paper with black print, in a dark palette too.
  QPalette paper = text->palette();
  paper.setColor(QPalette::Base, Qt::white);
  paper.setColor(QPalette::Text, Qt::black);
  text->setPalette(paper);
  text->setMinimumSize(text->fontMetrics().averageCharWidth() * 62,
                       text->fontMetrics().lineSpacing() * 15);
  layout->addWidget(text, 1);

  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  layout->addWidget(buttons);
}

}  // namespace quillon
