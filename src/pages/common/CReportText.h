// SPDX-License-Identifier: MIT
#pragma once

#include <QPlainTextEdit>

namespace quillon {

// A read-only text on the grey ground of reports and logs, to be selected and copied. Lines may end
// with \r\n.
class CReportText : public QPlainTextEdit {
  Q_OBJECT

 public:
  // `name` is what a screen reader calls it.
  explicit CReportText(const QString& name, QWidget* parent = nullptr);

  // Adds the text at the end as it is and scrolls to the last line. The selection stays.
  void Append(const QString& text);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void Tint();
};

}  // namespace quillon
