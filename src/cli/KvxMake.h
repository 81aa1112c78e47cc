// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

namespace quillon {

// What `kvx make` is asked for.
struct MakeRequest {
  std::uint16_t device_id = 0;
  std::optional<std::uint16_t> node_version;  // 0 is a core file
  std::string from, to;
};

// Describes the options of `kvx make`, which fill the request as they are read.
void AddMakeOptions(CLI::App& make, MakeRequest& request);

// Makes the file and describes it in `out`. If that fails, returns a sentence that says why; a file
// that was there before is unchanged then. The image is never overwritten.
std::optional<std::string> MakeKvxFile(const MakeRequest& request, std::ostream& out);

}  // namespace quillon
