// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>

#include "tree/DeviceTreeModel.h"

namespace quillon {

// The entries of the context menu "Device Tools", numbered as their commands.
enum class DeviceTool : int {
  kLoadDefaults = 115,
  kCheckUpdate = 32779,
  kRefresh = 61453,
  kRestartDevice = 61454,
  kRestartFlash = 61455,
  kExpandAll = 61456,
  kCollapseAll = 61457,
};

// One entry: how it reads, and at which items of the tree it is enabled.
struct DeviceToolEntry {
  DeviceTool tool;
  unsigned places;  // a set of item kinds, bit by bit; kEveryPlace: anywhere
  const char* text;
  const char* icon;
  const char* purpose;    // what it does to the board
  const char* elsewhere;  // why it is disabled at any other item
};

inline constexpr unsigned kEveryPlace = ~0U;

// All entries in the order of the menu.
std::span<const DeviceToolEntry> DeviceToolEntries();

// `at` is the kind of the item under the mouse, nothing where there is none.
bool IsOffered(const DeviceToolEntry& entry, std::optional<TreeItemKind> at);

}  // namespace quillon
