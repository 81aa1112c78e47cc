// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>

namespace quillon {

// A part of a page that scrolls where the window is too small for it, and looks like a part of the
// page everywhere else: no frame, no ground of its own, hidden with its content. A control that
// gets the focus by keyboard is scrolled into view.
class CScrollPane : public QScrollArea {
  Q_OBJECT

 public:
  explicit CScrollPane(QWidget* content, QWidget* parent = nullptr);
  ~CScrollPane() override;

  // As high as the content needs, but not higher than `lines` lines of text.
  void SetMostLines(int lines);

  // Scrolls the pane around `inner`, if there is one, so that `part` of it can be seen.
  static void BringIntoView(const QWidget& inner, const QRect& part);

  bool hasHeightForWidth() const override { return most_lines_ > 0; }
  int heightForWidth(int width) const override;
  QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void FollowFocus(const QWidget* now);

  int most_lines_ = 0;  // none
};

}  // namespace quillon
