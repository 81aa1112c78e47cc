// SPDX-License-Identifier: MIT
#include "tree/DeviceTools.h"

namespace quillon {
namespace {

constexpr unsigned Place(TreeItemKind kind) { return 1U << static_cast<unsigned>(kind); }

constexpr unsigned kFlashBoards = Place(TreeItemKind::kFlashBoard);
constexpr unsigned kDeviceBoards = Place(TreeItemKind::kDeviceBoard);
constexpr unsigned kPorts = Place(TreeItemKind::kPort);

constexpr DeviceToolEntry kEntries[] = {
    {DeviceTool::kRefresh, kEveryPlace, "Refresh device list", "refresh",
     "Closes all boards and looks for them again.", ""},
    {DeviceTool::kRestartFlash, kDeviceBoards | kPorts, "Restart in Flash Mode", "restart-flash",
     "Restarts the board into its firmware loader.",
     "Only for a board in Device Mode and for a port."},
    {DeviceTool::kRestartDevice, kFlashBoards, "Restart in Device Mode", "restart-device",
     "Restarts the board into its firmware.", "Only for a board in Flash Mode."},
    {DeviceTool::kLoadDefaults, kDeviceBoards | kPorts, "Load default settings", "load-defaults",
     "Replaces the settings in the board by its defaults, after a confirmation.",
     "Only for a board in Device Mode and for a port."},
    {DeviceTool::kCheckUpdate, kFlashBoards | kDeviceBoards | kPorts, "Check for firmware update",
     "check-update", "Looks for a newer firmware for the board.",
     "Only for a board and for a port."},
    {DeviceTool::kExpandAll, kEveryPlace, "Expand all", "expand", "Shows all items of the tree.",
     ""},
    {DeviceTool::kCollapseAll, kEveryPlace, "Collapse all", "collapse",
     "Hides all items but the two modes.", ""},
};

}  // namespace

std::span<const DeviceToolEntry> DeviceToolEntries() { return kEntries; }

bool IsOffered(const DeviceToolEntry& entry, std::optional<TreeItemKind> at) {
  return entry.places == kEveryPlace || (at && (entry.places & Place(*at)) != 0);
}

}  // namespace quillon
