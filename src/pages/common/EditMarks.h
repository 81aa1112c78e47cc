// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <functional>
#include <vector>

class QCheckBox;
class QComboBox;

namespace quillon {

class CGridCtrl;
class CNumberBox;

// Marks the controls of a page whose value differs from a baseline: what was last retrieved from a
// board or stored in one. A mark goes when the value is set back. The baseline is kept apart from
// the page's settings blocks, because a failed update has already changed those.
class EditMarks : public QObject {
  Q_OBJECT

 public:
  explicit EditMarks(QObject* parent);

  // The controls that are watched. A grid counts with all its data cells.
  void Track(CGridCtrl* grid);
  void Track(CNumberBox* box);
  void Track(QCheckBox* box);
  void Track(QComboBox* box);
  // For a setting that does not depend on the control alone: `read` tells all that it depends on.
  // After a change that no signal of a control reports, call Compare().
  void Track(QWidget* control, std::function<QString()> read);

  // Takes what the controls show as the baseline; before the first call nothing is marked.
  void TakeBaseline();

  // Shows and hides the marks for the present values. Tracked controls cause that by themselves.
  void Compare();

  bool AnyEdited() const;

 Q_SIGNALS:
  // Some control got or lost its mark.
  void Changed();
  // What the user typed into some control was refused, or replaced by what the control can hold.
  void EntryRefused();

 private:
  // One thing that is compared: reads its value now, and shows or hides its mark.
  struct Item {
    std::function<QString()> read;
    std::function<void(bool edited)> show;
    QString baseline{};
    bool edited = false;
  };

  std::vector<Item> items_;
  std::vector<CGridCtrl*> grids_;
  bool has_baseline_ = false;
};

}  // namespace quillon
