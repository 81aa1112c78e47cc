// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <vector>

class QBoxLayout;
class QLabel;
class QPushButton;

namespace quillon {

class CButtonRow;
class CStatusLed;

// What surrounds the controls of every settings page: their groups, which scroll on a small screen,
// a line that says where the values come from, the three large buttons and the two lamps. It knows
// of no board.
class CPageFrame : public QWidget {
  Q_OBJECT

 public:
  // `title` is the caption of the group that frames the page's controls.
  explicit CPageFrame(const QString& title, QWidget* parent);

  // Makes the lamps dark and stops their blinking.
  void ResetIndicators();

 protected:
  // Where a page's controls go.
  QBoxLayout* Body() const { return body_; }
  // Adds a further group below and returns where its controls go.
  QBoxLayout* AddGroup(const QString& title);

  void ShowLine(const QString& line);
  // Makes a lamp lit and blinking, or dark.
  void ShowBusy(bool busy);
  void ShowError(bool error);
  // To be called when a control refuses what was typed into it. A press on a button takes the focus
  // from that control first, and is used up then: the user has not seen yet what it holds now.
  void NoteRefusal();

  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 Q_SIGNALS:
  void RetrievePressed();
  void UpdatePressed();
  void DefaultsPressed();

 private:
  void FillButtonRow(CButtonRow& row);
  void PutButtonsLastInTabOrder();

  QBoxLayout* groups_;
  QBoxLayout* body_;
  QLabel* line_ = nullptr;
  CStatusLed* busy_ = nullptr;
  CStatusLed* error_ = nullptr;
  std::vector<QPushButton*> buttons_;  // from left to right
  bool just_refused_ = false;          // an entry, in the event that is being handled
};

}  // namespace quillon
