// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "devlink/NodeRecord.h"
#include "firmware/KvxImage.h"
#include "firmware/VersionWord.h"
#include "kvusb/HidLibrary.h"

namespace quillon {

// How it ended for one node.
enum class NodeEnd {
  kSkipped,  // it needs no update; nothing was sent
  kCompleted,
  kAborted,  // it has no valid firmware now
  kFailed,   // the same
};

// What a run over the nodes reports while it goes on, and what it asks. Nodes are counted from 0.
class NodeUpdateObserver {
 public:
  NodeUpdateObserver() = default;
  NodeUpdateObserver(const NodeUpdateObserver&) = delete;
  NodeUpdateObserver& operator=(const NodeUpdateObserver&) = delete;
  virtual ~NodeUpdateObserver() = default;

  // The node was told to erase its firmware; its records follow.
  virtual void OnBegun(std::size_t node) = 0;
  // From 1 to 100, and only when the value changes.
  virtual void OnProgress(std::size_t node, int percent) = 0;
  // The node has this version now; comes just before the end.
  virtual void OnVersion(std::size_t node, VersionWord version) = 0;
  // The end for this node. `text` stands in its row from now on.
  virtual void OnEnded(std::size_t node, NodeEnd end, std::string_view text) = 0;

  // Two wishes, both asked about before each record. An abort is for the node that is being
  // programmed: the observer forgets it when it is told to, before each node.
  virtual bool AbortRequested() = 0;
  virtual void ForgetAbort() = 0;
  // Ends the run for good, as when the window is closed. Asked before each node, too.
  virtual bool StopRequested() = 0;

  // Called after each record. The only place in a run where other events are handled.
  virtual void Pump() = 0;
};

// Which nodes a run is for. Looked at when a node's turn comes.
struct NodeChoice {
  NodeSelection checked;
  bool force = false;  // also nodes that need no update
};

enum class NodeRunResult {
  kCompleted,  // every node had its turn
  kAborted,
  kFailed,
  kStopped,      // by that wish; nodes that ended before are done
  kNotForNodes,  // the image is not for nodes; nothing was sent and nothing said
};

// Writes an image for nodes into the checked ones, one after the other: erase, the records in the
// order of the file, finish. Runs on the caller's thread; all that it is given outlives the run.
//
// The first node that fails or is aborted ends the run: the later ones keep what they have. A wish
// takes effect before the next record, so one that comes during a node's last record is too late
// for this node. An abort is forgotten then; a stop ends the run before the next node.
//
// From the start of a run on, no version counts as published online. A node's record gets the
// version that was written, and is judged anew; a node that was not programmed to the end needs an
// update.
class NodeUpdate {
 public:
  NodeUpdate(HidLibrary& library, DeviceRecord& board, NodeRecords& nodes, const KvxImage& image,
             const NodeChoice& choice, NodeUpdateObserver& observer);

  NodeRunResult Run();

 private:
  bool IsUpToDate(const NodeRecord& node) const;
  NodeEnd Program(std::size_t node);
  NodeEnd SendRecords(std::size_t node, bool erased);
  bool SendRecord(std::size_t node, const KvxRecord& record);
  void Finish(std::size_t node);
  NodeEnd Ended(std::size_t node, NodeEnd end, std::string_view text);

  HidLibrary& library_;
  DeviceRecord& board_;
  NodeRecords& nodes_;
  const KvxImage& image_;
  const NodeChoice& choice_;
  NodeUpdateObserver& observer_;
  VersionWord version_ = 0;
  std::string_view word_;  // of the last record's status
};

}  // namespace quillon
