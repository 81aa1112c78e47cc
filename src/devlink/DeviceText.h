// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>

#include "kvusb/kvusb.h"

// Makes texts from outside, such as those of a record or names of files, fit to be shown. What a
// board, a library or a file system holds is not trusted: a text may lack its zero byte or hold
// anything.
namespace quillon {

// The text up to its zero byte or the field's end. Each run of control characters, line ends, bytes
// that are not UTF-8, and characters that are invisible or only format the text around them becomes
// one U+FFFD.
std::string ShownText(std::span<const char> field);

// The field as a text. Nothing if its zero byte is missing or any part of it is not fit to be
// shown. For a place that may hold something other than a text.
std::string TextOrNothing(std::span<const char> field);

// "product text : serial number", the board's name in the tree and in messages.
std::string BoardLabel(const DeviceRecord& record);

}  // namespace quillon
