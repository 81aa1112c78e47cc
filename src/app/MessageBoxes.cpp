// SPDX-License-Identifier: MIT
#include "app/MessageBoxes.h"

#include <QMessageBox>

namespace quillon {
namespace {

QMessageBox::Icon BoxIcon(UserPrompts::Icon icon) {
  switch (icon) {
    case UserPrompts::Icon::kInformation:
      return QMessageBox::Information;
    case UserPrompts::Icon::kQuestion:
      return QMessageBox::Question;
    case UserPrompts::Icon::kExclamation:
      return QMessageBox::Warning;
    case UserPrompts::Icon::kError:
      return QMessageBox::Critical;
    case UserPrompts::Icon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

QMessageBox::StandardButton Show(QWidget* parent, QString text, const QString& caption,
                                 QMessageBox::Icon icon, QMessageBox::StandardButtons buttons) {
  // A label would break the line twice at "\r\n".
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  QMessageBox box(icon, caption, text, buttons, parent);
  // Texts of boards and files are in it, and are no markup.
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  if (buttons.testFlag(QMessageBox::No)) box.setEscapeButton(QMessageBox::No);
  return static_cast<QMessageBox::StandardButton>(box.exec());
}

}  // namespace

void MessageBoxes::Message(QWidget* parent, const QString& text, const QString& caption,
                           Icon icon) {
  const auto hold = gate_.Enter();
  Show(parent, text, caption, BoxIcon(icon), QMessageBox::Ok);
}

bool MessageBoxes::AskYesNo(QWidget* parent, const QString& text, const QString& caption) {
  const auto hold = gate_.Enter();
  return Show(parent, text, caption, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No) ==
         QMessageBox::Yes;
}

}  // namespace quillon
