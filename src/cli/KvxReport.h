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

// What is wrong with an image that was read from a file of `file_size` bytes, as sentences: reasons
// not to hand the file out. The window loads such a file all the same and sends it as it is.
std::vector<std::string> FaultsOf(const KvxImage& image, std::size_t file_size);

}  // namespace quillon
