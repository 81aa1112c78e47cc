// SPDX-License-Identifier: MIT
#include "boards/Rig.h"

#include <algorithm>
#include <set>
#include <span>

#include "boards/Family.h"
#include "boards/JsonFields.h"
#include "kvusb/kvusb.h"

namespace quillon::sim {
namespace {

constexpr std::size_t kNameBytes = sizeof(DeviceRecord::product_text);
constexpr std::size_t kSerialBytes = sizeof(DeviceRecord::serial_number);
constexpr std::size_t kMostIdBytes = 26;  // what a record has room for
constexpr std::string_view kSimulated = " (simulated)";
constexpr std::uint32_t kLongestMs = 60'000;
constexpr std::uint32_t kMostRequests = 1'000'000;

std::string IdOf(const JsonFields& fields) {
  std::string id = fields.Text("id");
  const bool fits = !id.empty() && id.size() <= kMostIdBytes;
  if (!fits || id.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-_") != id.npos)
    fields.Fail("id", "1 to 26 of a-z, 0-9, - and _");
  return id;
}

// The bytes of a text that is given in hexadecimal.
std::string RawText(const JsonFields& fields, const char* key, std::size_t field_bytes) {
  std::string hex = fields.Text(key);
  const bool repeat = hex.ends_with("...");
  if (repeat) hex.resize(hex.size() - 3);
  const auto bytes = ParseHexBytes(hex);
  if (!bytes || bytes->size() > field_bytes || (repeat && bytes->empty()))
    fields.Fail(key, "at most " + std::to_string(field_bytes) + " bytes in hexadecimal");
  std::string text(bytes->begin(), bytes->end());
  if (repeat) text.resize(field_bytes, text.back());
  return text;
}

std::string NameOf(const JsonFields& fields, std::uint16_t product) {
  std::string name = fields.Text("name", DefaultName(FamilyOf(product)));
  if (!name.ends_with(kSimulated)) name += kSimulated;
  if (name.size() >= kNameBytes) fields.Fail("name", "shorter");
  return fields.Has("name_hex") ? RawText(fields, "name_hex", kNameBytes) : name;
}

void ReadTexts(const JsonFields& fields, BoardSpec& board) {
  board.product_text = NameOf(fields, board.product);
  board.manufacturer = fields.Text("manufacturer", board.manufacturer);
  if (board.manufacturer.size() >= kNameBytes) fields.Fail("manufacturer", "shorter");
  if (fields.Has("manufacturer_hex"))
    board.manufacturer = RawText(fields, "manufacturer_hex", kNameBytes);
  board.serial = fields.Text("serial", board.serial);
  if (board.serial.size() != 3 || board.serial.find_first_not_of("0123456789") != std::string::npos)
    fields.Fail("serial", "three digits");
  if (fields.Has("serial_hex")) board.serial_text = RawText(fields, "serial_hex", kSerialBytes);
}

void ReadFirmware(const JsonFields& fields, BoardSpec& board) {
  const std::string mode = fields.Text("mode", "device");
  if (mode != "device" && mode != "flash") fields.Fail("mode", "\"device\" or \"flash\"");
  board.flash_mode = mode == "flash";
  board.firmware = fields.Version("firmware", 0);
  if (board.firmware == 0 && !board.flash_mode)
    throw FormatError(fields.Where() + " has no firmware, so its \"mode\" must be \"flash\".");
  if (fields.Has("loader")) board.loader = fields.Version("loader");
  if (fields.Has("queried")) board.queried = fields.Version("queried");
  if (fields.Has("flash_bytes")) board.flash_bytes = fields.Number("flash_bytes", 64, 0x10000);
  const auto duration = [&](const char* key, std::chrono::milliseconds fallback) {
    if (!fields.Has(key)) return fallback;
    return std::chrono::milliseconds(fields.Number(key, 0, kLongestMs));
  };
  board.reboot = duration("reboot_ms", board.reboot);
  board.erase = duration("erase_ms", board.erase);
}

void ReadNodeBlocks(const JsonFields& fields, NodeMemory& memory) {
  if (!fields.Has("blocks")) return;
  const JsonFields blocks(fields.Object("blocks"), "\"blocks\" of " + fields.Where());
  for (const PortBlock& block : PortBlocks()) {
    if (!blocks.Has(block.name)) continue;
    const auto bytes = blocks.Bytes(block.name);
    if (bytes.size() != std::size_t{2} * block.bytes)
      blocks.Fail(block.name, std::to_string(2 * block.bytes) + " bytes");
    std::ranges::copy(bytes, memory.begin() + block.offset);
  }
  blocks.RejectOthers();
}

void ReadNodes(const JsonFields& fields, BoardSpec& board) {
  if (!fields.Has("nodes")) return;
  if (FamilyOf(board.product) != Family::kNodes)
    throw FormatError(fields.Where() + " is no node board but has \"nodes\".");
  for (const auto& item : fields.Array("nodes")) {
    const JsonFields node(item, "A node of " + fields.Where());
    auto& place = board.nodes.at(node.Number("node", 1, kNodeCount) - 1);
    if (place) node.Fail("node", "another number than those before");
    place.emplace();
    if (node.Has("loader")) place->loader_version = node.Version("loader");
    place->flash_version = node.Version("flash", kNoFirmware);
    ReadNodeBlocks(node, place->memory);
    node.RejectOthers();
  }
}

std::vector<std::uint32_t> MovesOf(const JsonFields& card) {
  std::vector<std::uint32_t> moves;
  for (const auto& query : card.Array("moves")) {
    if (!query.is_number_unsigned() || query.get<std::uint64_t>() - 1 >= kMostRequests)
      card.Fail("moves", "a list of numbers from 1 to " + std::to_string(kMostRequests));
    moves.push_back(query.get<std::uint32_t>());
  }
  return moves;
}

void ReadCards(const JsonFields& fields, BoardSpec& board) {
  if (!fields.Has("cards")) return;
  std::set<std::size_t> seen;
  for (const auto& item : fields.Array("cards")) {
    const JsonFields given(item, "A card of " + fields.Where());
    const std::size_t number = given.Number("card", 1, kCardCount);
    const auto nodes = std::span(board.nodes).subspan(number * kNodesTogether, kNodesTogether);
    if (std::ranges::none_of(nodes, [](const auto& node) { return node.has_value(); }))
      given.Fail("card", "one with nodes");
    if (!seen.insert(number).second) given.Fail("card", "another number than those before");
    for (auto& node : nodes)
      if (node) node->addressed = given.Flag("addressed", true);
    Card& card = board.cards.at(number - 1);
    card.plugged = given.Flag("plugged", true);
    if (given.Has("moves")) card.moves = MovesOf(given);
    given.RejectOthers();
  }
}

void ReadBlocks(const JsonFields& fields, BoardSpec& board) {
  if (!fields.Has("blocks")) return;
  const JsonFields blocks(fields.Object("blocks"), "\"blocks\" of " + fields.Where());
  for (const auto& [name, factory] : FactoryBlocks(FamilyOf(board.product))) {
    if (!blocks.Has(name.c_str())) continue;
    auto bytes = blocks.Bytes(name.c_str());
    if (bytes.size() != factory.size())
      blocks.Fail(name.c_str(), std::to_string(factory.size()) + " bytes");
    board.blocks[name] = std::move(bytes);
  }
  blocks.RejectOthers();
}

FaultKind KindOf(const JsonFields& fields) {
  static const std::map<std::string, FaultKind> kKinds = {
      {"write_fails", FaultKind::kWriteFails},
      {"read_fails", FaultKind::kReadFails},
      {"stall", FaultKind::kStall},
      {"wrong_echo", FaultKind::kWrongEcho},
      {"short_answer", FaultKind::kShortAnswer},
      {"status", FaultKind::kStatus},
      {"vanish", FaultKind::kVanish},
      {"close_fails", FaultKind::kCloseFails},
  };
  const auto found = kKinds.find(fields.Text("kind"));
  if (found == kKinds.end()) fields.Fail("kind", "a kind of fault");
  return found->second;
}

void ReadFaults(const JsonFields& fields, BoardSpec& board) {
  if (!fields.Has("faults")) return;
  for (const auto& item : fields.Array("faults")) {
    const JsonFields given(item, "A fault of " + fields.Where());
    Fault fault;
    fault.kind = KindOf(given);
    const auto byte = [](std::uint32_t value) { return static_cast<std::uint8_t>(value); };
    if (given.Has("command")) fault.command = byte(given.HexNumber("command", 0xFF));
    if (given.Has("function")) fault.function = byte(given.HexNumber("function", 0xFF));
    if (given.Has("node")) fault.node = byte(given.Number("node", 1, kNodeCount) - 1);
    if (given.Has("nth")) fault.nth = given.Number("nth", 1, kMostRequests);
    if (given.Has("times")) fault.times = given.Number("times", 0, kMostRequests);
    if (given.Has("value")) fault.value = byte(given.Number("value", 0, 0xFF));
    given.RejectOthers();
    board.faults.push_back(fault);
  }
}

BoardSpec ReadBoard(const nlohmann::json& item, std::size_t number) {
  std::string where = "Board " + std::to_string(number);
  if (item.is_object() && item.contains("id") && item["id"].is_string())
    where += " (" + item["id"].get<std::string>() + ")";
  const JsonFields fields(item, where);
  BoardSpec board;
  board.id = IdOf(fields);
  board.product = static_cast<std::uint16_t>(fields.HexNumber("product", 0xFFFF));
  board.plugged = fields.Flag("plugged", true);
  ReadTexts(fields, board);
  ReadFirmware(fields, board);
  board.eeprom = fields.Flag("eeprom", true);
  ReadNodes(fields, board);
  ReadCards(fields, board);
  ReadBlocks(fields, board);
  ReadFaults(fields, board);
  fields.RejectOthers();
  return board;
}

}  // namespace

std::variant<Rig, std::string> ParseRig(std::string_view json) try {
  const nlohmann::json document = ParseJson(json);
  const JsonFields fields(document, "The rig");
  Rig rig;
  std::set<std::string> ids;
  const nlohmann::json& boards = fields.Array("boards");
  if (boards.size() > KVUSB_MOST_BOARDS)
    throw FormatError("The rig lists " + std::to_string(boards.size()) + " boards; a bus holds " +
                      std::to_string(KVUSB_MOST_BOARDS) + " at most.");
  for (const auto& item : boards) {
    rig.boards.push_back(ReadBoard(item, rig.boards.size() + 1));
    const std::string& id = rig.boards.back().id;
    if (!ids.insert(id).second) throw FormatError("Two boards have the id \"" + id + "\".");
  }
  fields.RejectOthers();
  return rig;
} catch (const FormatError& error) {
  return std::string(error.what());
}

Rig DefaultRig() { return std::get<Rig>(ParseRig(DefaultRigText())); }

}  // namespace quillon::sim
