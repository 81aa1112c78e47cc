// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <variant>

namespace quillon {

// What `kvx make` is asked for.
struct MakeRequest {
  std::uint16_t device_id = 0;
  std::optional<std::uint16_t> node_version;  // 0 is a core file
  std::string from, to;
};

// The request that the arguments behind `make` are, or a sentence on what is wrong with them.
std::variant<MakeRequest, std::string> ParseMakeRequest(std::span<const std::string> arguments);

// Makes the file and describes it in `out`. If that fails, returns a sentence that says why; a file
// that was there before is unchanged then. The image is never overwritten.
std::optional<std::string> MakeKvxFile(const MakeRequest& request, std::ostream& out);

}  // namespace quillon
