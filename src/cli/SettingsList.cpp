// SPDX-License-Identifier: MIT
//
// Prints every setting of every family as JSON: where it stands, what it may be, what it is in the
// factory. Pages about one port of a node have a list of their own. With --asciidoc FOLDER it
// writes the manual's tables of settings there, a file for each page.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <set>
#include <span>

#include "cli/SettingsTables.h"
#include "settings/NodeSettings.h"
#include "settings/Setting.h"

namespace quillon {
namespace {

using nlohmann::ordered_json;

const char* NameOf(Foreign foreign) {
  switch (foreign) {
    case Foreign::kClamped:
      return "clamped";
    case Foreign::kShown:
      return "shown";
    case Foreign::kLost:
      return "lost";
    case Foreign::kKept:
      return "kept";
    case Foreign::kFactory:
      return "factory";
  }
  return "";
}

ordered_json Json(const Choice& choice) {
  ordered_json json{{"text", choice.text}, {"first", choice.first}, {"last", choice.last}};
  if (choice.offset != 0) json["offset"] = choice.offset;
  if (!choice.offered) json["offered"] = false;
  return json;
}

ordered_json Json(const Setting& setting) {
  const auto [byte, bit, width] = setting.field;
  ordered_json json{{"id", setting.id},
                    {"title", setting.title},
                    {"purpose", setting.purpose},
                    {"field", {{"byte", byte}, {"bit", bit}, {"width", width}}},
                    {"least", setting.least},
                    {"most", setting.most},
                    {"foreign", NameOf(setting.foreign)}};
  if (!setting.factory.empty()) json["factory"] = setting.factory;
  for (const Choice& choice : setting.choices) json["choices"].push_back(Json(choice));
  for (const std::uint32_t code : setting.shown)
    json["shown"].push_back(code == kUnshown ? ordered_json() : ordered_json(code));
  if (setting.state_only) json["state_only"] = true;
  return json;
}

ordered_json Json(const Table& table) {
  ordered_json json{{"id", table.id},
                    {"rows", table.rows},
                    {"first_bit", table.first_bit},
                    {"bits_a_row", table.bits_a_row}};
  if (table.names.names.empty()) {
    json["names"] = {
        {"pattern", table.names.pattern}, {"first", table.names.first}, {"step", table.names.step}};
  } else {
    json["names"] = table.names.names;
    if (table.names.by_port) json["names_by_port"] = true;
  }
  for (const Setting& setting : table.settings) json["settings"].push_back(Json(setting));
  return json;
}

ordered_json Json(const Block& block) {
  ordered_json json{
      {"id", block.id}, {"read", block.read}, {"write", block.write}, {"bytes", block.bytes}};
  if (block.way == Way::kRange) json["range"] = {block.start, block.end};
  if (block.way == Way::kNode) json["node_offsets"] = {block.start, block.end};
  if (!block.write_checked) json["write_checked"] = false;
  for (const Table& table : block.tables) json["tables"].push_back(Json(table));
  return json;
}

ordered_json Json(std::span<const Page> pages) {
  ordered_json json = ordered_json::array();
  for (const Page& page : pages) {
    ordered_json one{{"id", page.id}, {"title", page.title}};
    if (page.about == About::kAllPorts) one["about"] = "all_ports";
    if (page.about == About::kPort) one["about"] = "port";
    for (const Block& block : page.blocks) one["blocks"].push_back(Json(block));
    json.push_back(std::move(one));
  }
  return json;
}

ordered_json Families() {
  ordered_json families = ordered_json::array();
  std::set<BoardFamily> seen;
  for (const Product& product : Products()) {
    if (!seen.insert(product.family).second) continue;
    ordered_json ids;
    for (const Product& other : Products()) {
      if (other.family == product.family) ids.push_back(other.id);
    }
    families.push_back({{"products", ids}, {"pages", Json(PagesOf(product.family))}});
    if (product.family == BoardFamily::kNodeSystem)
      families.back()["port_pages"] = Json(PortPages());
  }
  return families;
}

bool WriteTables(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  for (const SettingsTable& table : AllSettingsTables()) {
    std::ofstream file(folder / (table.name + ".adoc"), std::ios::binary);
    file << table.text << std::flush;
    if (!file) return false;
  }
  return true;
}

}  // namespace
}  // namespace quillon

int main(int argc, char** argv) {
  const std::span<char*> words(argv, static_cast<std::size_t>(argc));
  try {
    if (words.size() == 1) {
      std::cout << quillon::Families().dump(1) << '\n';
      return 0;
    }
    if (words.size() == 3 && words[1] == std::string_view("--asciidoc")) {
      if (quillon::WriteTables(words[2])) return 0;
      std::cerr << "quillon-settings-list: a table cannot be written to " << words[2] << '\n';
      return 1;
    }
  } catch (const std::exception& problem) {
    std::cerr << "quillon-settings-list: " << problem.what() << '\n';
    return 1;
  }
  std::cerr << "Usage: quillon-settings-list [--asciidoc FOLDER]\n";
  return 2;
}
