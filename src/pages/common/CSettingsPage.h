// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "devlink/BoardIdentity.h"
#include "pages/common/BoundControls.h"
#include "pages/common/CPageFrame.h"
#include "pages/common/CSettingsGrid.h"
#include "pages/common/PageContext.h"
#include "settings/Sheet.h"

namespace quillon {

// A page of settings: a view on a sheet, and the exchanges behind Retrieve, Update and Defaults. A
// page class says which setting stands where. Settings live in the board; a page only holds what
// was retrieved. It is made once and lives as long as the program. Every exchange goes to the board
// that is current at that moment.
class CSettingsPage : public CPageFrame {
  Q_OBJECT

 public:
  // `title` is the caption of the group that frames the page's controls.
  CSettingsPage(PageContext context, const Page& page, const QString& title, QWidget* parent);

  // The buttons' handlers. They do nothing while something else holds the gate.
  void Retrieve();
  void Update();
  void Defaults();

  // What Retrieve() does, for a caller that makes sure that no other exchange is under way.
  void RetrieveNow();

  // What "Load default settings" of the device does with each page: it fills in the defaults
  // without a question ...
  void LoadDefaults();
  // ... and then does the update. Returns whether that succeeded, or, on a page that says so,
  // whether it was answered at all.
  [[nodiscard]] bool StoreOnBoard();

  // For a page about one port: from now on it is about this port of the current board, counted from
  // 1 (A). What it held of another port or board is forgotten, so that it is never offered for this
  // one.
  void SetPort(int port);

  const Sheet& Values() const { return sheet_; }
  // Whether some control shows the cell.
  bool Shows(Cell cell) const;

  // Updates the line that says where the page's values come from: from the board that is current
  // now, or from another one.
  void ShowOrigin();

 protected:
  const PageContext& Context() const { return context_; }
  CSettingsGrid* AddGrid(QBoxLayout* layout, const QString& name, const GridLayout& grid);
  BoundControls& Controls() { return *controls_; }

  // What a control that is not bound does with a choice of the user's.
  void Choose(Cell cell, std::uint32_t code) { static_cast<void>(TakeEdit(cell, code)); }
  // Whether the user's choice can be taken. A page that refuses one says why.
  virtual bool Accepts(Cell /*cell*/, std::uint32_t /*code*/) { return true; }
  // Whether an exchange with a port is left out, as for a node that is not there.
  virtual bool Skips(NodePort /*port*/) const { return false; }
  // What a user is to know of the exchanges that are left out now; empty for nothing.
  virtual QString LeftOut() const { return {}; }
  // The sheet has changed, and the controls that show it were filled.
  virtual void OnShown() {}

  // Exchanges a packet with the current board. False without a board, and unless the answer echoes
  // the command.
  [[nodiscard]] bool SendCurrent(std::span<std::uint8_t> packet);

 private:
  // Where the page's values come from.
  enum class Origin { kNone, kRetrieved, kPartlyRetrieved, kNothing, kStored, kPartlyStored };
  // What became of the exchanges of a retrieve or an update, which stop at the first that fails.
  struct Outcome {
    bool done = true;         // none failed
    bool transported = true;  // none failed before it was answered
    bool any = false;         // the board and the page have something in common now
    bool all = true;          // they have everything in common that was to be exchanged
  };

  template <typename Transfer>
  Outcome RunExchanges(const Transfer& transfer);
  bool TakeEdit(Cell cell, std::uint32_t code);
  bool FinishEdits();
  void ShowSheet();
  void SetOrigin(Origin origin);
  QString SubjectLabel() const;

  PageContext context_;
  Sheet sheet_;
  BoundControls* controls_;
  std::vector<CSettingsGrid*> grids_;
  int port_ = 0;  // none
  BoardIdentity board_of_port_;
  Origin origin_ = Origin::kNone;
  BoardIdentity origin_board_;
  QString origin_label_;
  QString left_out_;    // of the last exchange
  QString rest_label_;  // after an exchange in part: another board, whose values the rest are
};

}  // namespace quillon
