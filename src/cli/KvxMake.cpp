// SPDX-License-Identifier: MIT
#include "cli/KvxMake.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <utility>

#include "devlink/DeviceText.h"
#include "devlink/Products.h"
#include "firmware/ImageSource.h"
#include "firmware/KvxImage.h"
#include "storage/FilePath.h"
#include "storage/ReplaceFile.h"

namespace quillon {
namespace {

// More than the text of a whole flash with one byte a line, so of any file that can be made.
constexpr std::size_t kMostSourceBytes = std::size_t{4} << 20;

std::uint16_t WordOf(const std::string& option, const std::string& text) {
  std::uint16_t word = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, word, 16);
  if (text.size() == 4 && rest == end && error == std::errc()) return word;
  throw CLI::ValidationError(option, "It takes four hexadecimal digits, not \"" + text + "\"");
}

// Only files of the node I/O system say whether they are for the board or for its nodes.
void CheckNodeVersion(const MakeRequest& request) {
  const bool has_nodes = FamilyOf(request.device_id) == BoardFamily::kNodeSystem;
  if (has_nodes == request.node_version.has_value()) return;
  throw CLI::ParseError(
      has_nodes ? "A board of the node I/O system needs --core or --node-version"
                : "--core and --node-version are for boards of the node I/O system only",
      CLI::ExitCodes::ValidationError);
}

FlashPieces ReadPieces(const std::string& path) {
  std::string ending = FilePath(path).extension().string();
  std::ranges::transform(ending, ending.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  const bool is_hex = ending == ".hex" || ending == ".ihx" || ending == ".ihex";
  if (!is_hex && ending != ".bin") return "The name ends neither in .hex, .ihx, .ihex nor in .bin.";
  const auto read = ReadFile(FilePath(path), kMostSourceBytes);
  if (const auto* problem = std::get_if<FileProblem>(&read)) return problem->Sentence("It");
  const auto& text = std::get<std::string>(read);
  if (text.empty()) return "It is empty.";
  if (is_hex) return ReadIntelHex(text);
  const std::vector<std::uint8_t> bytes(text.begin(), text.end());
  return PiecesOfBinary(bytes);
}

// True also where one is a link to the other.
bool AreOneFile(const std::filesystem::path& one, const std::filesystem::path& other) {
  std::error_code missing;
  return std::filesystem::equivalent(one, other, missing);
}

}  // namespace

void AddMakeOptions(CLI::App& make, MakeRequest& request) {
  make.add_option_function<std::string>(
          "--device",
          [&](const std::string& text) { request.device_id = WordOf("--device", text); },
          "the board's USB product id, four hexadecimal digits: 0910")
      ->required()
      ->type_name("ID");
  make.add_option("--from", request.from,
                  "Intel HEX (.hex, .ihx, .ihex) or plain bytes from address 0 on (.bin)")
      ->required()
      ->type_name("IMAGE");
  make.add_option("-o", request.to, "the KVX file; one that is there already is replaced")
      ->required()
      ->type_name("FILE");
  auto* const core = make.add_flag_callback(
      "--core", [&] { request.node_version = 0; },
      "for boards of the node I/O system: the image is for the board itself");
  make.add_option_function<std::string>(
          "--node-version",
          [&](const std::string& text) {
            request.node_version = WordOf("--node-version", text);
            if (request.node_version == 0)
              throw CLI::ValidationError("--node-version",
                                         "The digits of a node's version are not all 0");
          },
          "or for its nodes, in this version: 0130 is version 1.30")
      ->excludes(core)
      ->type_name("WORD");
  make.callback([&] { CheckNodeVersion(request); });
}

std::optional<std::string> MakeKvxFile(const MakeRequest& request, std::ostream& out) {
  if (AreOneFile(FilePath(request.from), FilePath(request.to))) {
    return request.to + ": It is the image itself, which would be lost. Name another file with -o.";
  }
  const auto pieces = ReadPieces(request.from);
  if (const auto* wrong = std::get_if<std::string>(&pieces)) return request.from + ": " + *wrong;
  KvxImage image;
  image.device_id = request.device_id;
  image.node_version = request.node_version;
  auto records =
      SplitIntoRecords(std::get<std::vector<FlashPiece>>(pieces),
                       image.IsForNodes() ? KvxRecord::kMostNodeBytes : KvxRecord::kMostBytes);
  if (const auto* wrong = std::get_if<std::string>(&records)) return request.from + ": " + *wrong;
  image.records = std::get<std::vector<KvxRecord>>(std::move(records));
  if (image.records.empty()) return request.from + ": It holds no data.";
  const auto bytes = WriteKvx(image);
  const std::string text(bytes.begin(), bytes.end());
  RemoveLeftovers(FilePath(request.to));
  if (const auto problem = ReplaceFile(FilePath(request.to), text, FileReaders::kEverybody)) {
    return request.to + ": " + problem->Sentence("It");
  }
  out << ShownText(request.to) << ": " << image.records.size() << " records\n";
  return std::nullopt;
}

}  // namespace quillon
