// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QString>
#include <array>
#include <functional>
#include <optional>

#include "devlink/BoardLink.h"
#include "firmware/NodeUpdate.h"
#include "pages/common/FlashPace.h"

namespace quillon {

class CNodeList;
class StackRun;

// The update of a board's nodes as a user follows it: it shows each node's progress and end in the
// list, and lets "Abort" through after each record. An update is a run with an item for each node.
class NodeRun : private NodeUpdateObserver {
 public:
  // Called when a node begins to be programmed, and when one was skipped.
  struct Events {
    std::function<void()> begun, skipped;
  };

  // All of them outlive the object's last update.
  NodeRun(BoardLink& link, StackRun& run, CNodeList& list, Events events);

  // Writes the image into the current board's nodes that are checked in the list, which the user
  // may still change for the nodes to come. To be called from the work of the run. `force`: also
  // into nodes that need no update.
  void Update(const KvxImage& image, bool force);

  // How many nodes the last update was for and what became of them, in a sentence.
  QString Summary() const;

 private:
  void OnBegun(std::size_t node) override;
  void OnProgress(std::size_t node, int percent) override;
  void OnVersion(std::size_t node, VersionWord version) override;
  void OnEnded(std::size_t node, NodeEnd end, std::string_view text) override;
  bool AbortRequested() override;
  void ForgetAbort() override;
  bool StopRequested() override;
  void Pump() override;

  FlashPace::Time Now() const { return FlashPace::Time(clock_.elapsed()); }
  QString TimeOf() const;

  BoardLink& link_;
  StackRun& run_;
  CNodeList& list_;
  Events events_;
  QElapsedTimer clock_;
  FlashPace pace_;  // of the node that is being programmed, in per cent
  NodeChoice choice_;
  std::array<std::optional<NodeEnd>, kBoardNodes> ends_;
  QString board_;
};

}  // namespace quillon
