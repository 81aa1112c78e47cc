// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <QStringListModel>

class QListView;

namespace quillon {

// The drop-down list of a grid's combo cells: one for all of them, a pop-up window under the cell.
// Arrow keys, typing and the mouse move in it, Enter or a click chooses, Escape or a click beside
// it closes it. The entry that the cell shows can be chosen again: it may stand for another code
// than the cell holds, and the page's rules may have to run.
class CChoiceList : public QFrame {
  Q_OBJECT

 public:
  explicit CChoiceList(QWidget* parent);

  // `current` need not be one of the choices; `cell` is in screen coordinates.
  void Open(const QStringList& choices, const QString& current, const QRect& cell);
  // Goes to the next entry that begins with the text.
  void Search(const QString& text);

 signals:
  void Chosen(const QString& text);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void Place();
  void Choose();

  QListView* list_;
  QStringListModel choices_;
  QRect cell_;
};

}  // namespace quillon
