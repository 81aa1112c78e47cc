// SPDX-License-Identifier: MIT
#include "testing/pages/ScriptedPrompts.h"

#include <gtest/gtest.h>

#include <utility>

namespace quillon::testing {

ScriptedPrompts::~ScriptedPrompts() {
  for (const Prompt& prompt : expected_) ADD_FAILURE() << "Never came: " << prompt.text;
}

void ScriptedPrompts::ExpectMessage(const std::string& text, const std::string& caption,
                                    Icon icon) {
  expected_.push_back({text, caption, icon, Kind::kMessage});
}

void ScriptedPrompts::ExpectQuestion(const std::string& text, const std::string& caption, bool yes,
                                     Icon icon) {
  expected_.push_back({text, caption, icon, Kind::kQuestion, yes});
}

void ScriptedPrompts::ExpectOpenFile(std::optional<QString> path, const QString& chosen) {
  expected_.push_back({"KVX Files (*.kvx);;All Files (*)", "Open", Icon::kQuestion, Kind::kFile,
                       false, std::move(path), chosen});
}

void ScriptedPrompts::Message(QWidget* /*parent*/, const QString& text, const QString& caption,
                              Icon icon) {
  const Prompt prompt = Next(text, caption, Kind::kMessage);
  EXPECT_EQ(prompt.icon, icon) << text.toStdString();
}

bool ScriptedPrompts::AskYesNo(QWidget* /*parent*/, const QString& text, const QString& caption,
                               Icon icon) {
  const Prompt prompt = Next(text, caption, Kind::kQuestion);
  EXPECT_EQ(prompt.icon, icon) << text.toStdString();
  return prompt.yes;
}

std::optional<QString> ScriptedPrompts::OpenFile(QWidget* /*parent*/, const QString& caption,
                                                 const QString& default_suffix,
                                                 const QString& filter, const QString& chosen) {
  EXPECT_EQ(default_suffix, "kvx");
  const Prompt prompt = Next(filter, caption, Kind::kFile);
  EXPECT_EQ(prompt.chosen.toStdString(), chosen.toStdString());
  return prompt.path;
}

ScriptedPrompts::Prompt ScriptedPrompts::Next(const QString& text, const QString& caption,
                                              Kind kind) {
  if (expected_.empty()) {
    ADD_FAILURE() << "No test expects the prompt \"" << caption.toStdString()
                  << "\": " << text.toStdString();
    return {};
  }
  Prompt prompt = expected_.front();
  expected_.pop_front();
  EXPECT_EQ(prompt.text, text.toStdString());
  EXPECT_EQ(prompt.caption, caption.toStdString());
  EXPECT_EQ(prompt.kind, kind) << text.toStdString();
  if (while_open_) std::exchange(while_open_, nullptr)();
  return prompt;
}

}  // namespace quillon::testing
