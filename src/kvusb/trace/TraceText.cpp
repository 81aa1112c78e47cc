// SPDX-License-Identifier: MIT
#include "kvusb/trace/TraceText.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <optional>
#include <span>
#include <sstream>

namespace quillon {
namespace {

using Call = TraceEntry::Call;

constexpr std::array<std::string_view, 4> kCallNames{"detect", "write", "read", "close"};

std::string Hex(unsigned value, int digits) {
  char text[16] = "";
  std::snprintf(text, sizeof text, "%0*x", digits, value);
  return text;
}

// Not by printf: a locale must not put a comma where a reader expects the point.
std::string Seconds(double value) {
  std::array<char, 32> text{};
  const auto [end, error] =
      std::to_chars(text.begin(), text.end(), value, std::chars_format::fixed, 6);
  return error == std::errc() ? std::string(text.begin(), end) : "0";
}

std::optional<double> ParseSeconds(std::string_view word) {
  double value = 0;
  const char* const last = word.data() + word.size();
  const auto [end, error] = std::from_chars(word.data(), last, value, std::chars_format::fixed);
  if (error != std::errc() || end != last) return std::nullopt;
  return value;
}

std::string Quoted(std::span<const char> field) {
  std::string out = "\"";
  for (const char c : field) {
    if (c == '\0') break;
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte > 0x7E || c == '"' || c == '\\') {
      out += "\\x" + Hex(byte, 2);
    } else {
      out += c;
    }
  }
  return out + "\"";
}

std::string FormatPacket(const TracePacket& packet) {
  const auto last = std::find_if(packet.rbegin(), packet.rend(), [](auto b) { return b != 0; });
  const auto used = static_cast<std::size_t>(packet.rend() - last);
  std::string out;
  for (std::size_t i = 0; i < used; ++i) out += Hex(packet[i], 2) + " ";
  if (used == packet.size()) out.pop_back();
  return used == packet.size() ? out : out + "*";
}

// Reads one line word by word; any call after a failure fails too.
class LineReader {
 public:
  explicit LineReader(const std::string& line) : in_(line) {}

  std::optional<std::string> Word() {
    std::string word;
    if (in_ >> word) return word;
    return std::nullopt;
  }

  bool Accept(std::string_view expected) {
    const auto word = Word();
    return word && *word == expected;
  }

  template <typename Number>
  std::optional<Number> Parse(int base = 10) {
    const auto word = Word();
    if (!word) return std::nullopt;
    return ParseWord<Number>(*word, base);
  }

  template <typename Number>
  static std::optional<Number> ParseWord(std::string_view word, int base = 10) {
    Number value{};
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value, base);
    if (error != std::errc() || end != word.data() + word.size()) return std::nullopt;
    return value;
  }

  // A quoted text into a field of a record; a text that fills the field leaves no zero byte.
  bool Quoted(std::span<char> field) {
    std::fill(field.begin(), field.end(), '\0');
    in_ >> std::ws;
    if (in_.get() != '"') return false;
    for (std::size_t at = 0;; ++at) {
      int c = in_.get();
      if (c == '"') return true;
      if (c == std::istringstream::traits_type::eof() || at == field.size()) return false;
      if (c == '\\') {
        std::string digits(2, '\0');
        if (in_.get() != 'x' || !in_.read(digits.data(), 2)) return false;
        const auto byte = ParseWord<std::uint8_t>(digits, 16);
        if (!byte) return false;
        c = *byte;
      }
      field[at] = static_cast<char>(c);
    }
  }

  bool Packet(TracePacket& packet) {
    packet.fill(0);
    for (std::size_t at = 0; at <= packet.size(); ++at) {
      const auto word = Word();
      if (!word) return at == packet.size();
      if (*word == "*") return !Word();
      const auto byte = ParseWord<std::uint8_t>(*word, 16);
      if (!byte || at == packet.size()) return false;
      packet[at] = *byte;
    }
    return false;
  }

 private:
  std::istringstream in_;
};

std::optional<DeviceRecord> ParseBoard(const std::string& line) {
  LineReader in(line);
  DeviceRecord record{};
  if (!in.Accept("board") || !in.Accept("pid")) return std::nullopt;
  const auto product = in.Parse<std::uint16_t>(16);
  if (!product || !in.Accept("version")) return std::nullopt;
  const auto version = in.Parse<std::uint16_t>(16);
  if (!version || !in.Accept("product") || !in.Quoted(record.product_text) || !in.Accept("maker") ||
      !in.Quoted(record.manufacturer) || !in.Accept("serial") || !in.Quoted(record.serial_number) ||
      in.Word()) {
    return std::nullopt;
  }
  record.product_id = *product;
  record.version = *version;
  return record;
}

// A call's own line; `boards` is how many board lines follow.
std::optional<TraceEntry> ParseCall(const std::string& line, std::size_t& boards) {
  LineReader in(line);
  TraceEntry entry;
  auto word = in.Word();
  if (word) {
    if (const auto seconds = ParseSeconds(*word)) {
      entry.seconds = *seconds;
      word = in.Word();
    }
  }
  if (!word) return std::nullopt;
  const auto name = std::find(kCallNames.begin(), kCallNames.end(), *word);
  if (name == kCallNames.end()) return std::nullopt;
  entry.call = static_cast<Call>(name - kCallNames.begin());
  const auto argument = in.Parse<std::uint32_t>();
  if (!argument || !in.Accept("->")) return std::nullopt;
  const auto result = in.Parse<std::int32_t>();
  if (!result) return std::nullopt;
  entry.argument = *argument;
  entry.result = *result;
  boards = 0;
  if (entry.call == Call::kDetect && entry.result != 0) {
    if (!in.Accept("boards")) return std::nullopt;
    const auto count = in.Parse<std::uint32_t>();
    if (!count) return std::nullopt;
    boards = *count;
  }
  if (entry.HasPacket() && (!in.Accept(":") || !in.Packet(entry.packet))) return std::nullopt;
  if (in.Word()) return std::nullopt;
  return entry;
}

}  // namespace

bool TraceEntry::HasPacket() const {
  if (call == Call::kWrite) return true;
  return call == Call::kRead && result != KVUSB_READ_FAILED && result != KVUSB_READ_TIMEOUT;
}

std::string FormatTraceEntry(const TraceEntry& entry) {
  std::string out = Seconds(entry.seconds) + " ";
  out += kCallNames[static_cast<std::size_t>(entry.call)];
  out += ' ' + std::to_string(entry.argument) + " -> " + std::to_string(entry.result);
  if (entry.HasPacket()) out += " : " + FormatPacket(entry.packet);
  if (entry.call == Call::kDetect && entry.result != 0) {
    out += " boards " + std::to_string(entry.boards.size());
    for (const DeviceRecord& board : entry.boards) {
      out += "\nboard pid " + Hex(board.product_id, 4) + " version " + Hex(board.version, 4) +
             " product " + Quoted(board.product_text) + " maker " + Quoted(board.manufacturer) +
             " serial " + Quoted(board.serial_number);
    }
  }
  return out + "\n";
}

std::variant<std::vector<TraceEntry>, std::string> ParseTrace(std::string_view text) {
  std::vector<TraceEntry> entries;
  std::istringstream in{std::string(text)};
  std::string line;
  std::size_t boards = 0;
  for (int number = 1; std::getline(in, line); ++number) {
    line.erase(0, line.find_first_not_of(" \t"));
    line.erase(line.find_last_not_of(" \t\r") + 1);
    if (line.empty() || line[0] == '#' || line + "\n" == kTraceHeading) continue;
    if (boards > 0) {
      const auto board = ParseBoard(line);
      if (!board) return "Line " + std::to_string(number) + " is no board: " + line;
      entries.back().boards.push_back(*board);
      --boards;
    } else if (auto entry = ParseCall(line, boards)) {
      entry->line = number;
      entries.push_back(std::move(*entry));
    } else {
      return "Line " + std::to_string(number) + " is no call: " + line;
    }
  }
  if (boards > 0) return "The trace ends where a board should stand.";
  return entries;
}

}  // namespace quillon
