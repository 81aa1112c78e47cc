// SPDX-License-Identifier: MIT
#include "cli/KvxMake.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <utility>

#include "cli/KvxReport.h"
#include "devlink/DeviceText.h"
#include "devlink/Products.h"
#include "firmware/ImageSource.h"
#include "firmware/KvxImage.h"
#include "storage/ReplaceFile.h"

namespace quillon {
namespace {

// More than the text of a whole flash with one byte a line, so of any file that can be made.
constexpr std::size_t kMostSourceBytes = std::size_t{4} << 20;

std::optional<std::uint16_t> WordOf(const std::string& text) {
  std::uint16_t word = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, word, 16);
  if (text.size() != 4 || rest != end || error != std::errc()) return std::nullopt;
  return word;
}

// The options as they were given; none may come twice.
struct Options {
  std::optional<std::string> device, from, to, node_version;
  bool core = false;
};

std::optional<std::string>* ValueOf(Options& options, const std::string& name) {
  if (name == "--device") return &options.device;
  if (name == "--from") return &options.from;
  if (name == "-o") return &options.to;
  if (name == "--node-version") return &options.node_version;
  return nullptr;
}

std::variant<Options, std::string> ParseOptions(std::span<const std::string> arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& name = arguments[i];
    if (name == "--core") {
      options.core = true;
      continue;
    }
    auto* const value = ValueOf(options, name);
    if (value == nullptr) return "make does not know \"" + name + "\".";
    if (*value) return name + " is given twice.";
    if (++i == arguments.size()) return name + " needs a value.";
    *value = arguments[i];
  }
  return options;
}

// What the options say about the word at offset 2, which only the node I/O system's files have.
std::optional<std::string> SetNodeVersion(const Options& options, MakeRequest& request) {
  const bool has_nodes = FamilyOf(request.device_id) == BoardFamily::kNodeSystem;
  if (has_nodes != (options.core || options.node_version)) {
    return has_nodes ? "A board of the node I/O system needs --core or --node-version."
                     : "--core and --node-version are for boards of the node I/O system only.";
  }
  if (options.core && options.node_version) return "It is either --core or --node-version.";
  if (options.core) request.node_version = 0;
  if (!options.node_version) return std::nullopt;
  request.node_version = WordOf(*options.node_version);
  if (request.node_version.value_or(0) != 0) return std::nullopt;
  return "The node version is four hexadecimal digits, not all of them 0, not \"" +
         *options.node_version + "\".";
}

FlashPieces ReadPieces(const std::string& path) {
  std::string ending = std::filesystem::path(path).extension().string();
  std::ranges::transform(ending, ending.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  const bool is_hex = ending == ".hex" || ending == ".ihx" || ending == ".ihex";
  if (!is_hex && ending != ".bin") return "The name ends neither in .hex, .ihx, .ihex nor in .bin.";
  const auto read = ReadFile(path, kMostSourceBytes);
  if (const auto* problem = std::get_if<FileProblem>(&read)) return SentenceOn(*problem);
  const auto& text = std::get<std::string>(read);
  if (text.empty()) return "It is empty.";
  if (is_hex) return ReadIntelHex(text);
  const std::vector<std::uint8_t> bytes(text.begin(), text.end());
  return PiecesOfBinary(bytes);
}

// True also where one is a link to the other.
bool AreOneFile(const std::string& one, const std::string& other) {
  std::error_code missing;
  return std::filesystem::equivalent(one, other, missing);
}

}  // namespace

std::variant<MakeRequest, std::string> ParseMakeRequest(std::span<const std::string> arguments) {
  auto parsed = ParseOptions(arguments);
  if (auto* wrong = std::get_if<std::string>(&parsed)) return std::move(*wrong);
  const auto& options = std::get<Options>(parsed);
  if (!options.device || !options.from || !options.to) {
    return "make needs --device, --from and -o.";
  }
  const auto device_id = WordOf(*options.device);
  if (!device_id) {
    return "The device id is four hexadecimal digits, not \"" + *options.device + "\".";
  }
  MakeRequest request;
  request.device_id = *device_id;
  request.from = *options.from;
  request.to = *options.to;
  if (auto wrong = SetNodeVersion(options, request)) return std::move(*wrong);
  return request;
}

std::optional<std::string> MakeKvxFile(const MakeRequest& request, std::ostream& out) {
  if (AreOneFile(request.from, request.to)) {
    return request.to + ": It is the image itself, which would be lost. Name another file with -o.";
  }
  const auto pieces = ReadPieces(request.from);
  if (const auto* wrong = std::get_if<std::string>(&pieces)) return request.from + ": " + *wrong;
  const bool for_nodes = request.node_version.value_or(0) != 0;
  auto records = SplitIntoRecords(std::get<std::vector<FlashPiece>>(pieces),
                                  for_nodes ? kMostNodeRecordBytes : KvxRecord::kMostBytes);
  if (const auto* wrong = std::get_if<std::string>(&records)) return request.from + ": " + *wrong;
  KvxImage image;
  image.device_id = request.device_id;
  image.node_version = request.node_version;
  image.records = std::get<std::vector<KvxRecord>>(std::move(records));
  if (image.records.empty()) return request.from + ": It holds no data.";
  const auto bytes = WriteKvx(image);
  const std::string text(bytes.begin(), bytes.end());
  RemoveLeftovers(request.to);
  if (const auto problem = ReplaceFile(request.to, text, FileReaders::kEverybody)) {
    return request.to + ": " + SentenceOn(*problem);
  }
  out << ShownText(request.to) << ": " << image.records.size() << " records\n";
  return std::nullopt;
}

}  // namespace quillon
