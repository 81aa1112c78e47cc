// SPDX-License-Identifier: MIT
#include "hidraw/BoardEvents.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "kvusb/UsbNumbers.h"

namespace quillon {
namespace {

std::string InterfacePath(const HidrawNode& node) {
  std::array<char, 48> front{};
  std::snprintf(front.data(), front.size(), R"(\\?\USB#VID_%04X&PID_%04X#)",
                static_cast<unsigned>(kUsbVendorId), static_cast<unsigned>(node.product_id));
  return front.data() + node.serial + "#{a5dcbf10-6530-11d2-901f-00c04fb951ed}";
}

}  // namespace

BoardEvents::BoardEvents(const std::vector<HidrawNode>& nodes, Reader read)
    : read_(std::move(read)), boards_(BoardsOf(nodes)) {}

BoardEvents::Boards BoardEvents::BoardsOf(const std::vector<HidrawNode>& nodes) {
  Boards boards;
  for (const HidrawNode& node : nodes)
    if (node.type) boards.emplace(node.board, Board{node.folder, InterfacePath(node)});
  return boards;
}

std::optional<BoardEvent> BoardEvents::Take(const KernelEvent& event) {
  if (event.subsystem == "hidraw" && event.action == "add") {
    const auto node = read_(event.folder);
    return node && node->type ? Come(*node) : std::nullopt;
  }
  if (event.action != "remove") return std::nullopt;
  const auto gone = std::ranges::find_if(boards_, [&](const auto& board) {
    return event.subsystem == "hidraw" ? board.second.node == event.folder
                                       : board.first == event.folder;
  });
  if (gone == boards_.end()) return std::nullopt;
  // A board's nodes go before the board does, so this node belongs to a board that came after the
  // removal, which is reported late.
  if (event.subsystem != "hidraw" && read_(gone->second.node)) return std::nullopt;
  return Go(gone);
}

// A board that is listed can come again only if its removal was missed.
std::optional<BoardEvent> BoardEvents::Come(const HidrawNode& node) {
  const auto known = boards_.find(node.board);
  if (known != boards_.end() && (known->second.node == node.folder || read_(known->second.node)))
    return std::nullopt;
  const Board board{node.folder, InterfacePath(node)};
  boards_[node.board] = board;
  return BoardEvent{true, board.path};
}

BoardEvent BoardEvents::Go(Boards::iterator board) {
  BoardEvent event{false, std::move(board->second.path)};
  boards_.erase(board);
  return event;
}

std::vector<BoardEvent> BoardEvents::Compare(const std::vector<HidrawNode>& nodes) {
  Boards now = BoardsOf(nodes);
  std::vector<BoardEvent> events;
  for (const auto& [place, board] : boards_) {
    const auto same = now.find(place);
    if (same == now.end() || same->second.node != board.node) events.push_back({false, board.path});
  }
  for (const auto& [place, board] : now) {
    const auto same = boards_.find(place);
    if (same == boards_.end() || same->second.node != board.node)
      events.push_back({true, board.path});
  }
  boards_ = std::move(now);
  return events;
}

}  // namespace quillon
