// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hidraw/HidrawList.h"

namespace quillon {

// An event of the kernel as udev hands it on: "add", "remove" and others of the subsystems hidraw
// and usb. `folder` is the device's in /sys.
struct KernelEvent {
  std::string action, subsystem, folder;
};

// A physical board came or went. The path has the form of Windows' device interface paths:
//   \\?\USB#VID_4C7E&PID_0910#001#{a5dcbf10-6530-11d2-901f-00c04fb951ed}
struct BoardEvent {
  bool arrived = false;
  std::string path;
};

// Makes one event for each physical board out of the many that the kernel sends for it: for the USB
// device, for its interfaces, and for two more devices of each HID interface.
//
// A board has come when the node of its configuration interface is there, which is when it can be
// opened; its other interfaces say nothing. It has gone when that node or the whole USB device has
// gone, whichever event comes first. So the object keeps a list of the boards that are there, and
// never has to wait for events that may still follow.
class BoardEvents {
 public:
  using Reader = std::function<std::optional<HidrawNode>(const std::string& folder)>;

  // `nodes` are those that are there already. `read` reads a node's folder.
  explicit BoardEvents(
      const std::vector<HidrawNode>& nodes,
      Reader read = [](const std::string& folder) { return ReadHidrawNode(folder); });

  std::optional<BoardEvent> Take(const KernelEvent& event);

  // For when events were lost: the events that must have happened if these nodes are there now.
  std::vector<BoardEvent> Compare(const std::vector<HidrawNode>& nodes);

 private:
  struct Board {
    std::string node;  // the folder of its configuration interface's node
    std::string path;
  };
  using Boards = std::map<std::string, Board>;  // by HidrawNode::board

  static Boards BoardsOf(const std::vector<HidrawNode>& nodes);
  std::optional<BoardEvent> Come(const HidrawNode& node);
  BoardEvent Go(Boards::iterator board);

  Reader read_;
  Boards boards_;
};

}  // namespace quillon
