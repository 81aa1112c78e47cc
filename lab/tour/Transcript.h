// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QString>

namespace quillon {

// The text that a tour leaves: numbered steps, with what was done and seen below each. Every line
// is on the disk when a call returns, so that a tour that breaks off shows how far it came.
class Transcript {
 public:
  // Throws std::runtime_error when the file cannot be written.
  explicit Transcript(const QString& file);

  void Step(const QString& title);
  // Indented below the step; further lines of the text are indented more.
  void Note(const QString& text);
  void Line(const QString& text);

 private:
  QFile file_;
  int step_ = 0;
};

}  // namespace quillon
