// SPDX-License-Identifier: MIT
#include "boards/StateFile.h"

#include <algorithm>

#include "boards/JsonFields.h"
#include "storage/ReadFile.h"
#include "storage/ReplaceFile.h"

namespace quillon::sim {
namespace {

using nlohmann::json;
namespace fs = std::filesystem;

constexpr std::uint32_t kFormat = 1;

// The flashes of a board and twelve nodes, 64 KiB each, have 1.6 MiB of digits.
constexpr std::size_t kMostBytes = std::size_t{4} << 20;

json NodeJson(const Node& node) {
  return {{"active", node.active},
          {"new", !node.addressed},
          {"loader", node.loader_version},
          {"flash_version", node.flash_version},
          {"flash", FormatHexBytes(node.flash.bytes)},
          {"memory", FormatHexBytes(node.memory)}};
}

std::uint16_t Word(const JsonFields& fields, const char* key) {
  return static_cast<std::uint16_t>(fields.Number(key, 0, 0xFFFF));
}

Node ReadNode(const json& item) {
  const JsonFields fields(item, "A node");
  Node node;
  node.active = fields.Flag("active");
  node.addressed = !fields.Flag("new", false);
  node.loader_version = Word(fields, "loader");
  node.flash_version = Word(fields, "flash_version");
  node.flash.bytes = fields.Bytes("flash");
  const auto memory = fields.Bytes("memory");
  if (memory.size() != node.memory.size()) fields.Fail("memory", "62 bytes");
  std::ranges::copy(memory, node.memory.begin());
  return node;
}

std::string Serial(const JsonFields& fields, const char* key) {
  std::string serial = fields.Text(key);
  if (serial.size() != 3 || serial.find_first_not_of("0123456789") != serial.npos)
    fields.Fail(key, "three digits");
  return serial;
}

void ReadFlash(const JsonFields& fields, const BoardSpec& spec, BoardState& state) {
  const JsonFields flash(fields.Object("flash"), "The flash");
  state.flash.valid = flash.Flag("valid");
  state.flash.bytes = flash.Bytes("bytes");
  const bool runs = state.flash.Version() != 0;
  if (state.flash.bytes.size() > spec.flash_bytes) flash.Fail("bytes", "shorter");
  if (state.flash.valid && !runs) throw FormatError("The flash is valid without a version.");
  const std::string mode = fields.Text("mode");
  if (mode != "device" && mode != "flash") fields.Fail("mode", "\"device\" or \"flash\"");
  state.flash_mode = mode == "flash";
  if (!state.flash_mode && !state.flash.valid)
    throw FormatError("The board runs a firmware that is not valid.");
}

void ReadBlocks(const JsonFields& fields, BoardState& state) {
  const JsonFields blocks(fields.Object("blocks"), "\"blocks\"");
  for (auto& [name, bytes] : state.blocks) {
    auto kept = blocks.Bytes(name.c_str());
    if (kept.size() != bytes.size())
      blocks.Fail(name.c_str(), std::to_string(bytes.size()) + " bytes");
    bytes = std::move(kept);
  }
  blocks.RejectOthers();
}

void ReadCalibration(const JsonFields& fields, BoardState& state) {
  const auto value = [&](const json& number) {
    if (!number.is_number_unsigned() || number.get<std::uint64_t>() > 0xFFFF)
      fields.Fail("calibration", "8 lists of min, center and max");
    return number.get<std::uint16_t>();
  };
  const json& axes = fields.Array("calibration");
  if (axes.size() != state.calibration.size()) fields.Fail("calibration", "8 lists");
  for (std::size_t i = 0; i < axes.size(); ++i) {
    if (!axes[i].is_array() || axes[i].size() != 3) fields.Fail("calibration", "8 lists of three");
    state.calibration[i] = {value(axes[i][0]), value(axes[i][1]), value(axes[i][2])};
  }
}

// A file that cannot be used is moved out of the way, so that it is neither overwritten nor tried
// again.
std::string SetAside(const fs::path& file, const BoardSpec& spec, const std::string& reason) {
  fs::path broken = file;
  broken += ".broken";
  std::error_code error;
  fs::rename(file, broken, error);
  return "The kept state of board " + spec.id +
         " cannot be used, so it starts with factory settings. " + reason +
         (error ? " The file " + file.string() + " could not be set aside: " + error.message() + "."
                : " The file was set aside as " + broken.string() + ".");
}

fs::path FileOf(const fs::path& folder, const BoardSpec& spec) {
  return folder / (spec.id + ".json");
}

}  // namespace

std::string FormatState(const BoardSpec& spec, const BoardState& state) {
  json document = {
      {"format", kFormat},
      {"product", spec.product},
      {"mode", state.flash_mode ? "flash" : "device"},
      {"serial", state.serial},
      {"flash", {{"valid", state.flash.valid}, {"bytes", FormatHexBytes(state.flash.bytes)}}},
      {"blocks", json::object()}};
  if (state.next_serial) document["next_serial"] = *state.next_serial;
  if (state.queried) document["queried"] = *state.queried;
  for (const auto& [name, bytes] : state.blocks) document["blocks"][name] = FormatHexBytes(bytes);
  for (const AxisRange& axis : state.calibration)
    document["calibration"].push_back({axis.min, axis.center, axis.max});
  for (const Node& node : state.nodes) document["nodes"].push_back(NodeJson(node));
  return document.dump(1) + "\n";
}

std::variant<BoardState, std::string> ParseState(const BoardSpec& spec, std::string_view text) try {
  const json document = ParseJson(text);
  const JsonFields fields(document, "The state");
  fields.Number("format", kFormat, kFormat);
  if (fields.Number("product", 0, 0xFFFF) != spec.product)
    throw FormatError("The state is that of another product.");
  BoardState state = FactoryState(spec);
  state.serial = Serial(fields, "serial");
  if (fields.Has("next_serial")) state.next_serial = Serial(fields, "next_serial");
  state.queried.reset();
  if (fields.Has("queried")) state.queried = Word(fields, "queried");
  ReadFlash(fields, spec, state);
  ReadBlocks(fields, state);
  ReadCalibration(fields, state);
  const json& nodes = fields.Array("nodes");
  if (nodes.size() != state.nodes.size()) fields.Fail("nodes", "12 objects");
  std::ranges::transform(nodes, state.nodes.begin(), ReadNode);
  fields.RejectOthers();
  return state;
} catch (const FormatError& error) {
  return std::string(error.what());
}

LoadedState LoadState(const fs::path& folder, const BoardSpec& spec) {
  const fs::path file = FileOf(folder, spec);
  RemoveLeftovers(file);
  const auto content = ReadFile(file, kMostBytes);
  if (const auto* const problem = std::get_if<FileProblem>(&content)) {
    if (problem->IsMissing()) return {};
    return {std::nullopt, SetAside(file, spec, problem->Sentence("The file"))};
  }
  auto parsed = ParseState(spec, std::get<std::string>(content));
  if (const auto* reason = std::get_if<std::string>(&parsed))
    return {std::nullopt, SetAside(file, spec, *reason)};
  return {std::get<BoardState>(std::move(parsed)), {}};
}

std::string SaveState(const fs::path& folder, const BoardSpec& spec, const BoardState& state) {
  const fs::path file = FileOf(folder, spec);
  if (!ReplaceFile(file, FormatState(spec, state), FileReaders::kOwner)) return {};
  return "The state of board " + spec.id + " cannot be kept in " + file.string() +
         ", it lasts until the program ends.";
}

}  // namespace quillon::sim
