// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <array>
#include <vector>

class QBoxLayout;
class QLabel;
class QPushButton;

namespace quillon {

class CStatusLed;

// The large buttons of a page with their captions beside them, and its lamps at the right end. On a
// narrow page first the captions wrap, then the lamps stand one above the other. If that is still
// too wide, the captions are hidden; the tooltips say more than they do.
class CButtonRow : public QWidget {
  Q_OBJECT

 public:
  explicit CButtonRow(QWidget* parent = nullptr);

  void AddButton(QPushButton* button, QLabel* caption);
  // To be called after all buttons were added.
  void AddLamp(CStatusLed* lamp, QLabel* name);

  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  enum Form { kWide, kWrapped, kNarrow, kBare, kForms };

  void Take(Form form);
  void Measure();
  void Fit();

  QBoxLayout* row_;
  QBoxLayout* lamps_;
  std::vector<QLabel*> captions_;
  std::array<int, kForms> least_{};  // the widths that the forms need
  Form form_ = kWide;
};

}  // namespace quillon
