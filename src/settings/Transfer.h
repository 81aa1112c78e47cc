// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "kvusb/HidLibrary.h"
#include "settings/Setting.h"

namespace quillon {

// Which port a node's block is about. Blocks of the board itself do not look at it.
struct NodePort {
  std::uint8_t node = 0;  // counted from 0
  std::uint8_t half = 0;  // 0: the node's first port, 1: its second
};

// How a transfer ended.
struct TransferResult {
  enum class End {
    kNotTransported,  // an exchange failed
    kRefused,         // answered, but not with the echo that was expected
    kDone,
  };
  End end = End::kNotTransported;
  // Of a block that was written in several packets, the bytes that the board had taken before it
  // stopped; else all or none.
  std::size_t bytes = 0;

  bool IsDone() const { return end == End::kDone; }
  // Whether every exchange succeeded, whatever was answered.
  bool IsTransported() const { return end != End::kNotTransported; }
  bool operator==(const TransferResult&) const = default;
};

// Reads the block into `bytes`, which has the block's size and is touched only by a transfer that
// is done.
[[nodiscard]] TransferResult ReadBlock(HidLibrary& library, DeviceRecord& board, const Block& block,
                                       std::span<std::uint8_t> bytes, NodePort about = {});

// Writes the block from `bytes`, which has the block's size. If the block's write is not checked,
// that is always done: with no bytes where it was not transported, with all of them whatever was
// answered.
[[nodiscard]] TransferResult WriteBlock(HidLibrary& library, DeviceRecord& board,
                                        const Block& block, std::span<const std::uint8_t> bytes,
                                        NodePort about = {});

}  // namespace quillon
