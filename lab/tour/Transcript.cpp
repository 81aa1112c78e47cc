// SPDX-License-Identifier: MIT
#include "tour/Transcript.h"

#include <stdexcept>

namespace quillon {

Transcript::Transcript(const QString& file) : file_(file) {
  if (!file_.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
    throw std::runtime_error("The transcript " + file.toStdString() + " cannot be written.");
  }
}

void Transcript::Step(const QString& title) {
  Line(QString());
  Line(QStringLiteral("%1. %2").arg(++step_).arg(title));
}

void Transcript::Note(const QString& text) {
  QStringList lines = text.trimmed().remove(QLatin1Char('\r')).split(QLatin1Char('\n'));
  Line(QStringLiteral("   ") + lines.takeFirst());
  for (const QString& line : lines) {
    Line(line.isEmpty() ? line : QStringLiteral("       ") + line);
  }
}

void Transcript::Line(const QString& text) {
  file_.write(text.toUtf8() + '\n');
  file_.flush();
}

}  // namespace quillon
