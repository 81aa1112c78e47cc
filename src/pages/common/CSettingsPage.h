// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "devlink/BoardIdentity.h"
#include "devlink/Exchange.h"
#include "kvusb/HidPacket.h"
#include "pages/common/PageContext.h"

class QBoxLayout;
class QLabel;
class QPushButton;

namespace quillon {

class CButtonRow;
class CStatusLed;
class EditMarks;

// A page of settings: the frame around Retrieve, Update and Defaults with the lamps, the buttons
// and the exchanges. A page class adds its controls to Body() and says in three routines how they
// are filled, sent and reset. Settings live in the board; a page only holds what was retrieved. It
// is made once and lives as long as the program. Every exchange goes to the board that is current
// at that moment.
class CSettingsPage : public QWidget {
  Q_OBJECT

 public:
  // `title` is the caption of the group that frames the page's controls.
  CSettingsPage(PageContext context, const QString& title, QWidget* parent);

  // The buttons' handlers. They do nothing while something else holds the gate.
  void Retrieve();
  void Update();
  void Defaults();

  // What "Load default settings" of the device does with each page: it fills in the defaults
  // without a question ...
  void LoadDefaults() { DefaultsRoutine(); }
  // ... and then does the update. Returns whether that succeeded.
  [[nodiscard]] bool StoreOnBoard();

  // Makes the lamps dark and stops their blinking, at a detection. Intended: when another board is
  // chosen they stay as they are, because they tell of the page's last exchange.
  void ResetIndicators();

  // Updates the line that says where the page's values come from: from the board that is current
  // now, or from another one.
  void ShowOrigin();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

  // Reads the settings blocks from the board and fills the controls. Stops with false at the first
  // exchange that fails; what was filled before stays.
  virtual bool RetrieveRoutine() = 0;
  // Puts the controls' values into the settings blocks and sends them. Stops with false at the
  // first that fails.
  virtual bool UpdateRoutine() = 0;
  // Fills the controls with factory values; sends nothing.
  virtual void DefaultsRoutine() = 0;

  // Where a page's controls go.
  QBoxLayout* Body() const { return body_; }
  // Adds a further group below and returns where its controls go.
  QBoxLayout* AddGroup(const QString& title);
  const PageContext& Context() const { return context_; }
  // Every control that holds a setting is tracked here, so that edits show.
  EditMarks& Marks() const { return *marks_; }

  // Sends a command without payload. If the answer echoes it, reads the blocks, one after the
  // other, from the answer's data.
  template <typename... Blocks>
  [[nodiscard]] bool RetrieveBlock(std::uint8_t command, Blocks&... blocks) {
    static_assert((Blocks::kSize + ...) <= KVUSB_PACKET_BYTES - kDataByte);
    HidPacket packet{};
    packet[kCommandByte] = command;
    if (!QueryCurrent(packet)) return false;
    auto answer = std::span<const std::uint8_t>(packet).subspan(kDataByte);
    (TakeBlock(answer, blocks), ...);
    NoteAccepted();
    return true;
  }

  // Sends a command that writes the blocks. Succeeds when the answer echoes the command.
  template <typename... Blocks>
  [[nodiscard]] bool UpdateBlock(std::uint8_t command, const Blocks&... blocks) {
    static_assert((Blocks::kSize + ...) <= kSendChunk);
    HidPacket packet{};
    packet[kCommandByte] = command;
    packet[kArgumentByte] = kWriteArgument;
    auto payload = std::span<std::uint8_t>(packet).subspan(kPayloadByte);
    (PutBlock(payload, blocks), ...);
    return SendCurrent(packet);
  }

  // The same for a block that is the range [start, end) of the board's table and may take several
  // packets.
  template <typename Block>
  [[nodiscard]] bool RetrieveRange(std::uint8_t command, std::uint8_t start, std::uint8_t end,
                                   Block& block) {
    auto packet = RangeRequest<Block>(command, start, end);
    if (!QueryCurrent(packet)) return false;
    auto answer = std::span<const std::uint8_t>(packet).subspan(kDataByte);
    TakeBlock(answer, block);
    NoteAccepted();
    return true;
  }
  template <typename Block>
  [[nodiscard]] bool UpdateRange(std::uint8_t command, std::uint8_t start, std::uint8_t end,
                                 const Block& block) {
    auto packet = RangeRequest<Block>(command, start, end);
    packet[kArgumentByte] = kWriteArgument;
    auto payload = std::span<std::uint8_t>(packet).subspan(kPayloadByte);
    PutBlock(payload, block);
    return SendCurrent(packet);
  }

  void showEvent(QShowEvent* event) override;

  // Makes the Error lamp blink, or makes it dark. Retrieve(), Update() and Defaults() do so by
  // themselves.
  void ShowError(bool error);

  // A routine that reads a block in a way of its own calls this for each block that it accepted.
  void NoteAccepted() { ++accepted_blocks_; }

  // Exchange a packet with the current board and check the echo. They fail without a board.
  [[nodiscard]] bool QueryCurrent(std::span<std::uint8_t> packet);
  [[nodiscard]] bool SendCurrent(std::span<std::uint8_t> packet);

 private:
  // TakeBlock() reads the block from the front of `from`, PutBlock() writes it to the front of
  // `to`. The rest is left for the next block.
  template <typename Block>
  static void TakeBlock(std::span<const std::uint8_t>& from, Block& block) {
    block.Read(from.first<Block::kSize>());
    from = from.subspan(Block::kSize);
  }
  template <typename Block>
  static void PutBlock(std::span<std::uint8_t>& to, const Block& block) {
    block.Write(to.first<Block::kSize>());
    to = to.subspan(Block::kSize);
  }

  // A buffer with room for the block behind the longer of the two headers. Made anew for every
  // exchange, because a transfer in chunks leaves the last chunk's header in it.
  template <typename Block>
  static auto RangeRequest(std::uint8_t command, std::uint8_t start, std::uint8_t end) {
    static_assert(Block::kSize <= 2 * kSendChunk, "a third chunk would repeat the second's data");
    std::array<std::uint8_t, std::max<std::size_t>(KVUSB_PACKET_BYTES, kPayloadByte + Block::kSize)>
        packet{};
    packet[kLengthByte] = static_cast<std::uint8_t>(Block::kSize);
    packet[kStartByte] = start;
    packet[kEndByte] = end;
    packet[kCommandByte] = command;
    return packet;
  }

  // Where the page's values come from. After a retrieve in part, the marks still compare with the
  // values from before it.
  enum class Origin { kNone, kRetrieved, kPartlyRetrieved, kStored };

  void SetOrigin(Origin origin);
  void ShowBusy(bool busy);
  void FillButtonRow(CButtonRow& row);
  bool FinishEdits();
  void NoteRefusal();
  void PutButtonsLastInTabOrder();

  PageContext context_;
  QBoxLayout* groups_;
  QBoxLayout* body_;
  CStatusLed* busy_ = nullptr;
  CStatusLed* error_ = nullptr;
  QLabel* origin_line_ = nullptr;
  std::vector<QPushButton*> buttons_;  // from left to right
  EditMarks* marks_;
  int accepted_blocks_ = 0;
  bool just_refused_ = false;  // an entry, in the event that is being handled
  Origin origin_ = Origin::kNone;
  BoardIdentity origin_board_;
  QString origin_label_;
};

}  // namespace quillon
