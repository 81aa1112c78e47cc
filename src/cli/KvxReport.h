// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "firmware/KvxImage.h"

namespace quillon {

// What an image is for and what it holds, as lines of text: device id, kind, records, bytes,
// address ranges and the gaps between them.
std::string DescribeKvxImage(const KvxImage& image);

// Sentences on what keeps the image, read from a file of `file_size` bytes, from being one to hand
// out. The window loads such a file all the same; a board would refuse it, or end up with half of
// its firmware.
std::vector<std::string> FaultsOf(const KvxImage& image, std::size_t file_size);

}  // namespace quillon
