// SPDX-License-Identifier: MIT
#include "usbip/VhciPorts.h"

#include <charconv>
#include <optional>
#include <sstream>
#include <string>

namespace quillon::usbip {
namespace {

constexpr unsigned kFree = 4;

std::optional<unsigned> Number(const std::string& digits) {
  unsigned number = 0;
  const char* end = digits.data() + digits.size();
  const auto [stopped, error] = std::from_chars(digits.data(), end, number);
  if (error != std::errc{} || stopped != end) return std::nullopt;
  return number;
}

}  // namespace

std::vector<unsigned> FreePorts(std::string_view status) {
  std::vector<unsigned> ports;
  std::istringstream lines{std::string(status)};
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string hub, port, state;
    words >> hub >> port >> state;
    const auto number = Number(port);
    if (hub == "hs" && number && Number(state) == kFree) ports.push_back(*number);
  }
  return ports;
}

}  // namespace quillon::usbip
