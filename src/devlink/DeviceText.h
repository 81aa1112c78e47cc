// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>

#include "kvusb/kvusb.h"

// Texts of a record and other texts from outside, such as names of files, fit to be shown. What a
// board, a library or a file system holds is not trusted: a text may lack its zero byte or hold
// anything.
namespace quillon {

// The text up to its zero byte or the field's end. Control characters, line ends, bytes that are no
// UTF-8, and characters that show as nothing or only steer the text around them become one U+FFFD a
// run.
std::string ShownText(std::span<const char> field);

// The field as a text, or nothing where a single byte of it is not fit to be shown or its zero byte
// is missing. For a place that may hold something else than a text.
std::string TextOrNothing(std::span<const char> field);

// "product text : serial number", the board's name in the tree and in messages.
std::string BoardLabel(const DeviceRecord& record);

}  // namespace quillon
