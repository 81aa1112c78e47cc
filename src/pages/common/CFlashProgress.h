// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QWidget>

#include "pages/common/FlashPace.h"

class QBoxLayout;
class QLabel;
class QProgressBar;

namespace quillon {

class CPlainLine;

// The progress bar of the flash update. Beside it, or below it on a narrow page, stands what is
// loaded and how long the run takes.
class CFlashProgress : public QWidget {
  Q_OBJECT

 public:
  explicit CFlashProgress(QWidget* parent = nullptr);

  // What the loaded file holds.
  void ShowLoaded(const QString& text);

  // The records of a run begin: the bar is active, at 0 of `records`.
  void Begin(int records);
  // Cheap enough for every record: most calls draw nothing. 0 is always drawn.
  void Advance(int position);
  // Sets the bar to 0 and inactive, as it is without a run.
  void Reset();

  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  FlashPace::Time Now() const { return FlashPace::Time(clock_.elapsed()); }
  void Tint();
  void Fold();

  QElapsedTimer clock_;
  FlashPace pace_;
  QBoxLayout* line_;
  QProgressBar* bar_;
  QLabel* loaded_;
  CPlainLine* times_;
};

}  // namespace quillon
