// SPDX-License-Identifier: MIT
#include "boards/RigFile.h"

#include "storage/ReadFile.h"

namespace quillon::sim {
namespace {

// Room for as many boards as a bus holds, 4 KiB each: four times what a board with every key takes.
constexpr std::size_t kMostBytes = std::size_t{1} << 20;

}  // namespace

std::variant<Rig, std::string> ReadRigFile(const std::filesystem::path& file) {
  const std::string name = "The rig file " + file.string();
  const auto content = ReadFile(file, kMostBytes);
  if (const auto* const problem = std::get_if<FileProblem>(&content))
    return problem->Sentence(name);
  auto rig = ParseRig(std::get<std::string>(content));
  if (const auto* const wrong = std::get_if<std::string>(&rig))
    return name + " cannot be used. " + *wrong;
  return rig;
}

}  // namespace quillon::sim
