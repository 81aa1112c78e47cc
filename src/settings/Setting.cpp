// SPDX-License-Identifier: MIT
#include "settings/Setting.h"

#include <algorithm>

#include "settings/DigitalPortSettings.h"
#include "settings/JoystickSettings.h"
#include "settings/NodeSettings.h"
#include "settings/SpiSettings.h"

namespace quillon {
namespace {

std::string Fill(std::string_view pattern, std::int64_t number) {
  std::string text(pattern);
  const auto place = text.find("%1");
  if (place != std::string::npos) text.replace(place, 2, std::to_string(number));
  return text;
}

bool Covers(const Choice& choice, std::uint32_t code) {
  const auto [low, high] = std::minmax(choice.first, choice.last);
  return code >= low && code <= high;
}

std::string TextOf(const Choice& choice, std::uint32_t code) {
  return Fill(choice.text, std::int64_t{code} + choice.offset);
}

}  // namespace

std::span<const Page> PagesOf(BoardFamily family) {
  switch (family) {
    case BoardFamily::kJoystick:
      return JoystickPages();
    case BoardFamily::kSmallJoystick:
      return SmallJoystickPages();
    case BoardFamily::kScanMatrix:
      return ScanMatrixPages();
    case BoardFamily::kNodeSystem:
      return NodeSystemPages();
    case BoardFamily::kDigitalPorts:
      return DigitalPortPages();
    case BoardFamily::kInputBanks:
      return InputBankPages();
    case BoardFamily::kSpi:
      return SpiPages();
    default:
      return {};
  }
}

const Page* FindPage(BoardFamily family, std::string_view id) {
  const auto pages = PagesOf(family);
  const auto found = std::ranges::find(pages, id, &Page::id);
  return found == pages.end() ? nullptr : &*found;
}

std::optional<std::string> TextOf(const Setting& setting, std::uint32_t code) {
  for (const Choice& choice : setting.choices) {
    if (Covers(choice, code)) return TextOf(choice, code);
  }
  if (!setting.choices.empty()) return std::nullopt;
  if (setting.field.width == 1) return code != 0 ? "on" : "off";
  return std::to_string(code);
}

std::vector<Offer> OffersOf(const Setting& setting) {
  std::vector<Offer> offers;
  for (const Choice& choice : setting.choices) {
    if (!choice.offered) continue;
    for (std::uint32_t code = choice.first;; choice.first < choice.last ? ++code : --code) {
      offers.push_back({TextOf(choice, code), code});
      if (code == choice.last) break;
    }
  }
  return offers;
}

std::string RangeOf(const Setting& setting) {
  std::string range;
  for (const Choice& choice : setting.choices) {
    if (!choice.offered) continue;
    const auto [low, high] = std::minmax(choice.first, choice.last);
    if (!range.empty()) range += ", ";
    range += TextOf(choice, low);
    if (low != high) range += " to " + TextOf(choice, high);
  }
  if (setting.choices.empty() && setting.field.width > 1)
    range = std::to_string(setting.least) + " to " + std::to_string(setting.most);
  return range;
}

std::string DescriptionOf(const Setting& setting, std::size_t row) {
  std::string description(setting.purpose);
  if (setting.state_only) return description;
  const std::string range = RangeOf(setting);
  if (!range.empty()) description += ' ' + range + '.';
  const auto factory = FactoryOf(setting, row);
  description += factory ? " Default: " + TextOf(setting, *factory).value_or("") + '.'
                         : " Load page defaults leaves this as it is.";
  return description;
}

std::optional<std::uint32_t> FactoryOf(const Setting& setting, std::size_t row) {
  if (setting.factory.empty()) return std::nullopt;
  return setting.factory[setting.factory.size() == 1 ? 0 : row];
}

std::string NameOf(const RowNames& names, std::size_t row, int offset) {
  if (row < names.names.size()) return std::string(names.names[row]);
  return Fill(names.pattern, names.first + static_cast<std::int64_t>(row) * names.step + offset);
}

}  // namespace quillon
