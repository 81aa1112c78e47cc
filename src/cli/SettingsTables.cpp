// SPDX-License-Identifier: MIT
#include "cli/SettingsTables.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <span>

#include "settings/NodeSettings.h"

namespace quillon {
namespace {

struct Line {
  std::string title, purpose, values, factory;
  bool operator==(const Line&) const = default;
};

// Rows that are the same in everything but their names.
struct Group {
  std::vector<std::string> rows;
  std::vector<Line> lines;
};

constexpr std::string_view kNothing = "–";

std::string Joined(std::span<const std::string> texts, std::string_view between) {
  std::string joined;
  for (const std::string& text : texts) {
    if (!joined.empty()) joined += between;
    joined += text;
  }
  return joined;
}

// A page's title may set a column's width with blanks, and end with a colon before its control.
std::string TitleOf(const Setting& setting) {
  const auto first = setting.title.find_first_not_of(' ');
  const auto last = setting.title.find_last_not_of(" :");
  return std::string(setting.title.substr(first, last - first + 1));
}

bool IsSwitch(const Setting& setting) {
  return setting.choices.empty() && setting.field.width == 1;
}

std::string ValuesOf(const Setting& setting) {
  if (setting.state_only) return std::string(kNothing);
  if (IsSwitch(setting)) return "on, off";
  std::string range = RangeOf(setting);
  if (!range.empty()) return range;
  std::vector<std::string> texts;
  for (const Choice& choice : setting.choices)
    texts.push_back(TextOf(setting, choice.first).value_or(""));
  return "shown only: " + Joined(texts, ", ");
}

std::vector<std::string> RowsOf(const Table& table) {
  const std::size_t names = table.names.by_port ? table.names.names.size() : table.rows;
  std::vector<std::string> rows;
  for (std::size_t row = 0; row < names; ++row) rows.push_back(NameOf(table.names, row));
  return rows;
}

// "on: X for Analog 1, Y for Analog 2"
std::string SwitchedOn(std::span<const Setting> switches, std::span<const std::string> rows) {
  std::vector<std::string> texts;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    for (const Setting& one : switches) {
      if (FactoryOf(one, row) != 0U) texts.push_back(TitleOf(one) + " for " + rows[row]);
    }
  }
  return "on: " + Joined(texts, ", ");
}

// The factory values of settings that share a line.
std::string FactoryOf(std::span<const Setting> settings, std::span<const std::string> rows) {
  const Setting& setting = settings.front();
  if (setting.state_only) return std::string(kNothing);
  if (setting.factory.empty()) return "stays as it is";
  if (setting.factory.size() > 1 && IsSwitch(setting)) return SwitchedOn(settings, rows);
  std::vector<std::string> texts;
  for (std::size_t row = 0; row < setting.factory.size(); ++row)
    texts.push_back(TextOf(setting, setting.factory[row]).value_or(""));
  if (texts.size() == 1) return texts.front();
  if (std::ranges::equal(texts, rows)) return "the row itself";
  for (std::size_t row = 0; row < texts.size(); ++row) texts[row] += " for " + rows[row];
  return Joined(texts, ", ");
}

// Switches that differ in nothing but their titles and which rows have them on in the factory.
bool ShareLine(const Setting& a, const Setting& b) {
  return IsSwitch(a) && IsSwitch(b) && a.purpose == b.purpose && a.state_only == b.state_only &&
         a.factory.size() == b.factory.size() &&
         (a.factory.size() > 1 || std::ranges::equal(a.factory, b.factory));
}

Group GroupOf(const Table& table) {
  Group group{RowsOf(table), {}};
  for (auto rest = table.settings; !rest.empty();) {
    std::size_t count = 1;
    while (count < rest.size() && ShareLine(rest.front(), rest[count])) ++count;
    const auto alike = rest.first(count);
    std::vector<std::string> titles;
    for (const Setting& setting : alike) titles.push_back(TitleOf(setting));
    group.lines.push_back({Joined(titles, ", "), std::string(alike.front().purpose),
                           ValuesOf(alike.front()), FactoryOf(alike, group.rows)});
    rest = rest.subspan(count);
  }
  return group;
}

// "Input 1, Input 3, … Input 15"
std::string NamesOf(const std::vector<std::string>& rows) {
  if (rows.size() <= 2) return Joined(rows, ", ");
  return rows[0] + ", " + rows[1] + ", … " + rows.back();
}

bool Holds(const Group& group, const Group& part) {
  return std::ranges::all_of(part.rows, [&](const std::string& row) {
    return std::ranges::find(group.rows, row) != group.rows.end();
  });
}

// Settings of some rows stand with those of all rows and name theirs, as the page shows them too.
std::vector<Group> GroupsOf(const Page& page) {
  std::vector<Group> groups;
  const auto add = [&](Group group) {
    Group* const last = groups.empty() ? nullptr : &groups.back();
    if (last != nullptr && last->lines == group.lines) {
      last->rows.insert(last->rows.end(), group.rows.begin(), group.rows.end());
    } else if (last != nullptr && Holds(*last, group)) {
      for (Line& line : group.lines) line.title += " of " + NamesOf(group.rows);
      last->lines.insert(last->lines.end(), group.lines.begin(), group.lines.end());
    } else {
      groups.push_back(std::move(group));
    }
  };
  for (const Block& block : page.blocks) {
    for (const Table& table : block.tables) add(GroupOf(table));
  }
  return groups;
}

std::string HeadingOf(const std::vector<std::string>& rows) {
  if (rows.size() == 1) return rows.front();
  return NamesOf(rows) + " (" + std::to_string(rows.size()) + " rows)";
}

// As it stands, whatever AsciiDoc makes of its characters elsewhere.
std::string Plain(std::string_view text) {
  std::string plain = "pass:c[";
  for (const char c : text) {
    if (c == '|' || c == ']') plain += '\\';
    plain += c;
  }
  return plain + ']';
}

std::string FileNameOf(std::string_view title) {
  std::string name;
  for (const char c : title) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
      name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    } else if (!name.ends_with('-')) {
      name += '-';
    }
  }
  return name;
}

struct Family {
  BoardFamily family;
  std::string_view title;
  std::string_view prefix;
};

constexpr std::array<Family, 7> kFamilies{{
    {BoardFamily::kJoystick, "Joystick controller", "joystick-"},
    {BoardFamily::kSmallJoystick, "Joystick controller without expansion port", "small-joystick-"},
    {BoardFamily::kScanMatrix, "Scan-matrix controller", "scan-matrix-"},
    {BoardFamily::kDigitalPorts, "Digital ports controller", "digital-ports-"},
    {BoardFamily::kInputBanks, "Digital ports controller with banks", "input-banks-"},
    {BoardFamily::kNodeSystem, "Node I/O system", "nodes-"},
    {BoardFamily::kSpi, "SPI controller", "spi-"},
}};

}  // namespace

SettingsTable TableOf(const Page& page, std::string_view family, std::string_view prefix) {
  const std::string name = std::string(prefix) + FileNameOf(page.title);
  std::string text = "[#table-" + name + "]\n." + std::string(family) + ", page " +
                     Plain(page.title) +
                     "\n[%header,cols=\"17,40,27,16\"]\n|===\n"
                     "|Setting |What it does |Values |Factory value\n";
  for (const Group& group : GroupsOf(page)) {
    text += "\n4+h|" + Plain(HeadingOf(group.rows)) + '\n';
    for (const Line& line : group.lines) {
      text += "\n|" + Plain(line.title) + "\n|" + Plain(line.purpose) + "\n|" + Plain(line.values) +
              "\n|" + Plain(line.factory) + '\n';
    }
  }
  return {name, text + "|===\n"};
}

std::vector<SettingsTable> AllSettingsTables() {
  std::vector<SettingsTable> tables;
  for (const Family& family : kFamilies) {
    for (const Page& page : PagesOf(family.family))
      tables.push_back(TableOf(page, family.title, family.prefix));
  }
  for (const Page& page : PortPages())
    tables.push_back(TableOf(page, "Port of a node", "nodes-port-"));
  return tables;
}

}  // namespace quillon
