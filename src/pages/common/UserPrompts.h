// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>

class QWidget;

namespace quillon {

// Message boxes and file dialogs. The seam where tests answer in the user's place.
class UserPrompts {
 public:
  enum class Icon { kNone, kInformation, kQuestion, kExclamation, kError };

  UserPrompts() = default;
  UserPrompts(const UserPrompts&) = delete;
  UserPrompts& operator=(const UserPrompts&) = delete;
  virtual ~UserPrompts() = default;

  // A message with an OK button; returns when it is closed.
  virtual void Message(QWidget* parent, const QString& text, const QString& caption, Icon icon) = 0;

  // A question with the buttons Yes and No. Closing the box means No.
  [[nodiscard]] virtual bool AskYesNo(QWidget* parent, const QString& text, const QString& caption,
                                      Icon icon) = 0;

  // A choice of one file that exists; nothing when the user cancels. `filter` is as in QFileDialog.
  // Opens with the file of `chosen`, a path, chosen in its folder, if it is not empty. Leaves the
  // process's current directory as it was.
  [[nodiscard]] virtual std::optional<QString> OpenFile(QWidget* parent, const QString& caption,
                                                        const QString& default_suffix,
                                                        const QString& filter,
                                                        const QString& chosen) = 0;
};

}  // namespace quillon
