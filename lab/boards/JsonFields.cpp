// SPDX-License-Identifier: MIT
#include "boards/JsonFields.h"

#include <charconv>
#include <utility>

namespace quillon::sim {
namespace {

constexpr int kDeepest = 32;

std::optional<std::uint32_t> Digits(std::string_view text, int base) {
  std::uint32_t value = 0;
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, value, base);
  if (text.empty() || error != std::errc{} || stopped != end) return std::nullopt;
  return value;
}

}  // namespace

nlohmann::json ParseJson(std::string_view text) {
  // A wrong value is printed by recursion, so a file must not decide how deep that goes.
  const auto limit_depth = [](int depth, nlohmann::json::parse_event_t, const nlohmann::json&) {
    if (depth > kDeepest) throw FormatError("The text is nested too deeply.");
    return true;
  };
  try {
    return nlohmann::json::parse(text, limit_depth);
  } catch (const nlohmann::json::exception& error) {
    std::string_view what = error.what();  // "[json.exception...] parse error at line ..."
    if (const auto end = what.find("] "); end != what.npos) what.remove_prefix(end + 2);
    throw FormatError("The text is no valid JSON: " + std::string(what) + ".");
  }
}

std::optional<std::uint16_t> ParseVersion(std::string_view text) {
  const auto dot = text.find('.');
  if (dot > 2 || text.size() != dot + 3) return std::nullopt;
  const auto whole = Digits(text.substr(0, dot), 16), part = Digits(text.substr(dot + 1), 16);
  if (!whole.has_value() || !part.has_value() || text.find_first_not_of("0123456789.") != text.npos)
    return std::nullopt;
  return static_cast<std::uint16_t>(*whole << 8 | *part);
}

std::optional<std::uint32_t> ParseHexNumber(std::string_view text, std::uint32_t most) {
  if (!text.starts_with("0x")) return std::nullopt;
  const auto value = Digits(text.substr(2), 16);
  return value && *value <= most ? value : std::nullopt;
}

std::optional<std::vector<std::uint8_t>> ParseHexBytes(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  for (std::size_t i = 0; i < text.size();) {
    if (text[i] == ' ') {
      ++i;
      continue;
    }
    const auto pair = text.substr(i, 2);
    const auto byte = pair.size() == 2 ? Digits(pair, 16) : std::nullopt;
    if (!byte) return std::nullopt;
    bytes.push_back(static_cast<std::uint8_t>(*byte));
    i += 2;
  }
  return bytes;
}

std::string FormatHexBytes(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const std::uint8_t byte : bytes) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0x0F];
  }
  return text;
}

JsonFields::JsonFields(const nlohmann::json& object, std::string where)
    : object_(object), where_(std::move(where)) {
  if (!object.is_object()) throw FormatError(where_ + " must be an object.");
}

bool JsonFields::Has(const char* key) const {
  asked_.insert(key);
  return object_.contains(key);
}

const nlohmann::json& JsonFields::At(const char* key) const {
  if (!Has(key)) throw FormatError(where_ + " lacks \"" + key + "\".");
  return object_.at(key);
}

void JsonFields::Fail(const char* key, const std::string& wanted) const {
  throw FormatError(where_ + ": \"" + key + "\" must be " + wanted + ", not " +
                    At(key).dump(-1, ' ', true, nlohmann::json::error_handler_t::replace) + ".");
}

std::string JsonFields::Text(const char* key) const {
  if (!At(key).is_string()) Fail(key, "a text");
  return At(key).get<std::string>();
}

std::string JsonFields::Text(const char* key, const std::string& fallback) const {
  return Has(key) ? Text(key) : fallback;
}

std::uint32_t JsonFields::Number(const char* key, std::uint32_t least, std::uint32_t most) const {
  const auto& value = At(key);
  if (!value.is_number_unsigned() || value.get<std::uint64_t>() < least ||
      value.get<std::uint64_t>() > most)
    Fail(key, "a number from " + std::to_string(least) + " to " + std::to_string(most));
  return value.get<std::uint32_t>();
}

bool JsonFields::Flag(const char* key) const {
  if (!At(key).is_boolean()) Fail(key, "true or false");
  return At(key).get<bool>();
}

bool JsonFields::Flag(const char* key, bool fallback) const {
  return Has(key) ? Flag(key) : fallback;
}

std::uint32_t JsonFields::HexNumber(const char* key, std::uint32_t most) const {
  const auto value = At(key).is_string() ? ParseHexNumber(Text(key), most) : std::nullopt;
  if (!value) Fail(key, most > 0xFF ? "a number like \"0x0910\"" : "a number like \"0x11\"");
  return *value;
}

std::uint16_t JsonFields::Version(const char* key, std::optional<std::uint16_t> none) const {
  const std::string text = Text(key);
  if (none && text == "none") return *none;
  const auto version = ParseVersion(text);
  if (!version) Fail(key, none ? "a version like \"2.82\" or \"none\"" : "a version like \"2.82\"");
  return *version;
}

std::vector<std::uint8_t> JsonFields::Bytes(const char* key) const {
  const auto bytes = ParseHexBytes(Text(key));
  if (!bytes) Fail(key, "bytes in hexadecimal");
  return *bytes;
}

const nlohmann::json& JsonFields::Array(const char* key) const {
  if (!At(key).is_array()) Fail(key, "a list");
  return At(key);
}

const nlohmann::json& JsonFields::Object(const char* key) const {
  if (!At(key).is_object()) Fail(key, "an object");
  return At(key);
}

void JsonFields::RejectOthers() const {
  for (const auto& item : object_.items())
    if (!asked_.contains(item.key()))
      throw FormatError(where_ + " has the unknown key \"" + item.key() + "\".");
}

}  // namespace quillon::sim
