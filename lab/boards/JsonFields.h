// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::sim {

// What is wrong with a text from outside: a sentence with the place in it. Never leaves the
// function that reads the whole text.
class FormatError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Parses a JSON text; throws FormatError.
nlohmann::json ParseJson(std::string_view text);

// "2.82" is 0x0282, "12.34" is 0x1234; nothing for any other text.
std::optional<std::uint16_t> ParseVersion(std::string_view text);

// "0x0910"; nothing for any other text or a value above `most`.
std::optional<std::uint32_t> ParseHexNumber(std::string_view text, std::uint32_t most);

// Bytes of two digits each; blanks between bytes do not count. Nothing for any other text.
std::optional<std::vector<std::uint8_t>> ParseHexBytes(std::string_view text);
std::string FormatHexBytes(std::span<const std::uint8_t> bytes);

// The keys of one JSON object, which must all be asked for before RejectOthers. Every function
// throws FormatError with `where` and the key when the value is missing (unless a fallback is
// given) or of another kind or range.
class JsonFields {
 public:
  JsonFields(const nlohmann::json& object, std::string where);

  const std::string& Where() const { return where_; }
  bool Has(const char* key) const;
  std::string Text(const char* key) const;
  std::string Text(const char* key, const std::string& fallback) const;
  std::uint32_t Number(const char* key, std::uint32_t least, std::uint32_t most) const;
  bool Flag(const char* key) const;
  bool Flag(const char* key, bool fallback) const;
  std::uint32_t HexNumber(const char* key, std::uint32_t most) const;
  // `none` stands for the text "none"; without it that is an error.
  std::uint16_t Version(const char* key, std::optional<std::uint16_t> none = std::nullopt) const;
  std::vector<std::uint8_t> Bytes(const char* key) const;
  const nlohmann::json& Array(const char* key) const;
  const nlohmann::json& Object(const char* key) const;
  void RejectOthers() const;

  [[noreturn]] void Fail(const char* key, const std::string& wanted) const;

 private:
  const nlohmann::json& At(const char* key) const;

  const nlohmann::json& object_;
  std::string where_;
  mutable std::set<std::string, std::less<>> asked_;
};

}  // namespace quillon::sim
