// SPDX-License-Identifier: MIT
#pragma once

#include "devlink/ExchangeGate.h"
#include "pages/common/UserPrompts.h"

namespace quillon {

// The real prompts: message boxes and file dialogs of the desktop. Each holds the gate while it is
// open.
class MessageBoxes : public UserPrompts {
 public:
  // The gate outlives the object.
  explicit MessageBoxes(ExchangeGate& gate) : gate_(gate) {}

  void Message(QWidget* parent, const QString& text, const QString& caption, Icon icon) override;
  bool AskYesNo(QWidget* parent, const QString& text, const QString& caption, Icon icon) override;

  // Without a chosen file it opens in the folder that QUILLON_FIRMWARE_DIR names, else in the
  // user's documents. Does not remember the folder that was used last.
  std::optional<QString> OpenFile(QWidget* parent, const QString& caption,
                                  const QString& default_suffix, const QString& filter,
                                  const QString& chosen) override;

 private:
  ExchangeGate& gate_;
};

}  // namespace quillon
