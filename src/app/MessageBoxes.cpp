// SPDX-License-Identifier: MIT
#include "app/MessageBoxes.h"

#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QSettings>
#include <QStandardPaths>

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
  // It holds texts of boards and files, which are not markup.
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  if (buttons.testFlag(QMessageBox::No)) box.setEscapeButton(QMessageBox::No);
  return static_cast<QMessageBox::StandardButton>(box.exec());
}

QString FirstFolder() {
  const QString given = qEnvironmentVariable("QUILLON_FIRMWARE_DIR");
  return given.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
                         : given;
}

// Qt notes where its file dialogs were, for all programs of the user. This puts the notes back as
// they were, so that ours leaves no history.
class FileDialogNotes {
 public:
  FileDialogNotes() {
    notes_.beginGroup(QStringLiteral("FileDialog"));
    for (const QString& key : notes_.allKeys()) before_[key] = notes_.value(key);
  }
  FileDialogNotes(const FileDialogNotes&) = delete;
  FileDialogNotes& operator=(const FileDialogNotes&) = delete;
  ~FileDialogNotes() {
    notes_.remove(QString());
    for (auto note = before_.cbegin(); note != before_.cend(); ++note) {
      notes_.setValue(note.key(), note.value());
    }
  }

 private:
  QSettings notes_{QSettings::UserScope, QStringLiteral("QtProject")};
  QMap<QString, QVariant> before_;
};

}  // namespace

void MessageBoxes::Message(QWidget* parent, const QString& text, const QString& caption,
                           Icon icon) {
  const auto hold = gate_.Enter();
  Show(parent, text, caption, BoxIcon(icon), QMessageBox::Ok);
}

bool MessageBoxes::AskYesNo(QWidget* parent, const QString& text, const QString& caption,
                            Icon icon) {
  const auto hold = gate_.Enter();
  return Show(parent, text, caption, BoxIcon(icon), QMessageBox::Yes | QMessageBox::No) ==
         QMessageBox::Yes;
}

std::optional<QString> MessageBoxes::OpenFile(QWidget* parent, const QString& caption,
                                              const QString& default_suffix, const QString& filter,
                                              const QString& chosen) {
  const auto hold = gate_.Enter();
  const FileDialogNotes notes;
  const QString current = QDir::currentPath();
  QFileDialog dialog(parent, caption, FirstFolder(), filter);
  dialog.setFileMode(QFileDialog::ExistingFile);
  dialog.setDefaultSuffix(default_suffix);
  if (!chosen.isEmpty()) {
    dialog.setDirectory(QFileInfo(chosen).absolutePath());
    dialog.selectFile(chosen);
  }
  const bool accepted = dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty();
  QDir::setCurrent(current);
  if (!accepted) return std::nullopt;
  return dialog.selectedFiles().front();
}

}  // namespace quillon
