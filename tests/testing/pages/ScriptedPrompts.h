// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "pages/common/UserPrompts.h"

namespace quillon::testing {

// Answers prompts as the test says, in order. A prompt that differs or that no test expects fails
// the test, and so does one that never comes.
class ScriptedPrompts : public UserPrompts {
 public:
  ~ScriptedPrompts() override;

  void ExpectMessage(const std::string& text, const std::string& caption, Icon icon);
  void ExpectQuestion(const std::string& text, const std::string& caption, bool yes,
                      Icon icon = Icon::kQuestion);
  // Answers a choice of a file, which opens with `chosen`; nothing cancels it.
  void ExpectOpenFile(std::optional<QString> path, const QString& chosen = {});

  // Runs while the next expected prompt is open, as an event of its event loop would.
  void WhileOpen(std::function<void()> action) { while_open_ = std::move(action); }

  void Message(QWidget* parent, const QString& text, const QString& caption, Icon icon) override;
  bool AskYesNo(QWidget* parent, const QString& text, const QString& caption, Icon icon) override;
  std::optional<QString> OpenFile(QWidget* parent, const QString& caption,
                                  const QString& default_suffix, const QString& filter,
                                  const QString& chosen) override;

 private:
  enum class Kind { kMessage, kQuestion, kFile };
  struct Prompt {
    std::string text;  // of a choice of a file, its filter
    std::string caption;
    Icon icon = Icon::kQuestion;
    Kind kind = Kind::kMessage;
    bool yes = false;
    std::optional<QString> path = std::nullopt;
    QString chosen = {};
  };

  Prompt Next(const QString& text, const QString& caption, Kind kind);

  std::deque<Prompt> expected_;
  std::function<void()> while_open_;
};

}  // namespace quillon::testing
