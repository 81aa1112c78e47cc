// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <functional>
#include <vector>

#include "settings/Sheet.h"

class QBoxLayout;
class QCheckBox;
class QComboBox;
class QWidget;

namespace quillon {

class CNumberBox;

// Check boxes, lists and number boxes that show values of a sheet, with their lists, tooltips and
// marks.
class BoundControls : public QObject {
  Q_OBJECT

 public:
  // Takes the code that the user has chosen for a cell to the sheet.
  using EditHandler = std::function<void(Cell cell, std::uint32_t code)>;

  BoundControls(const Sheet& sheet, EditHandler edit, QObject* parent);

  // A click on a box whose setting the board only tells does nothing here.
  void Bind(QCheckBox* box, Cell cell);
  // The list is filled with what the setting offers.
  void Bind(QComboBox* list, Cell cell);
  void Bind(CNumberBox* box, Cell cell);

  // Adds a label with the setting's title, and a list or a number box, whichever fits the setting.
  void AddLabelled(QBoxLayout* line, Cell cell);

  // Shows the sheet.
  void Show();
  // Takes numbers that are still being typed. False when one was refused.
  bool FinishEdits();

 Q_SIGNALS:
  // What the user typed was replaced by what the control can hold.
  void EntryRefused();

 private:
  void Add(QWidget* control, Cell cell, std::function<void(std::uint32_t code)> show);

  const Sheet& sheet_;
  EditHandler edit_;
  std::vector<std::function<void()>> shows_;
  std::vector<CNumberBox*> numbers_;
};

}  // namespace quillon
