// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <cstdint>
#include <span>

#include "devlink/HidPacket.h"
#include "pages/common/PageContext.h"

class QBoxLayout;
class QLabel;

namespace quillon {

class CStatusLed;
class EditMarks;

// A page of settings: the frame around Retrieve, Update and Defaults with the lamps, the buttons
// and the exchanges. A page class adds its controls to Body() and says in three routines how they
// are filled, sent and reset. Settings live in the board; a page holds what was retrieved and is
// made once for the whole run of the program. Every exchange goes to the board that is current
// then.
class CSettingsPage : public QWidget {
  Q_OBJECT

 public:
  // `title` is the caption of the group that frames the page's controls.
  CSettingsPage(PageContext context, const QString& title, QWidget* parent);

  // The buttons' handlers. They do nothing while something else holds the gate.
  void Retrieve();
  void Update();
  void Defaults();

  // What "Load default settings" of the device does with each page: defaults without a question,
  // then an update. Returns the update's success.
  void LoadDefaults() { DefaultsRoutine(); }
  [[nodiscard]] bool StoreOnBoard();

  // Lamps dark and still, as after a detection.
  void ResetIndicators();

  // Says where the page's values come from, seen from the board that is current now.
  void ShowOrigin();

 protected:
  // Reads the blocks into the shadow and fills the controls. False, with the controls as far as
  // they came, at the first exchange that failed.
  virtual bool RetrieveRoutine() = 0;
  // Reads the controls into the shadow and sends the blocks; false at the first that failed.
  virtual bool UpdateRoutine() = 0;
  // Fills the controls with factory values; sends nothing.
  virtual void DefaultsRoutine() = 0;

  // Where a page's controls go.
  QBoxLayout* Body() const { return body_; }
  const PageContext& Context() const { return context_; }
  // Every control that holds a setting is tracked here, so that edits show.
  EditMarks& Marks() const { return *marks_; }

  // Sends a command without payload and takes the block from the answer's data, if it echoes the
  // command.
  template <typename Block>
  [[nodiscard]] bool RetrieveBlock(std::uint8_t command, Block& block) {
    HidPacket packet{};
    packet[kCommandByte] = command;
    if (!QueryCurrent(packet)) return false;
    block.Read(std::span(packet).template subspan<kDataByte, Block::kSize>());
    NoteAccepted();
    return true;
  }

  // Sends a command that writes the block. Succeeds when the answer echoes the command.
  template <typename Block>
  [[nodiscard]] bool UpdateBlock(std::uint8_t command, const Block& block) {
    HidPacket packet{};
    packet[kCommandByte] = command;
    packet[kArgumentByte] = kWriteArgument;
    block.Write(std::span(packet).template subspan<kPayloadByte, Block::kSize>());
    return SendCurrent(packet);
  }

  // Lights the Error lamp, blinking, or darkens it. The frame does so for the three routines.
  void ShowError(bool error);

  // A routine that reads a block in another way calls this for each that it took over.
  void NoteAccepted() { ++accepted_blocks_; }

  // The exchanges with the current board, with the check of the echo. They fail without a board.
  [[nodiscard]] bool QueryCurrent(std::span<std::uint8_t> packet);
  [[nodiscard]] bool SendCurrent(std::span<std::uint8_t> packet);

 private:
  // What the values of the page are.
  enum class Origin { kNone, kRetrieved, kPartlyRetrieved, kStored };

  void SetOrigin(Origin origin);
  void ShowBusy(bool busy);
  void AddButtonRow(QBoxLayout* layout);

  PageContext context_;
  QBoxLayout* body_ = nullptr;
  CStatusLed* busy_ = nullptr;
  CStatusLed* error_ = nullptr;
  QLabel* origin_line_ = nullptr;
  EditMarks* marks_;
  int accepted_blocks_ = 0;
  Origin origin_ = Origin::kNone;
  QString origin_board_;
};

}  // namespace quillon
