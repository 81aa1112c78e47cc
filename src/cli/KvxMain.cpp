// SPDX-License-Identifier: MIT
#include "cli/KvxMain.h"

#include <string_view>

#include "cli/KvxMake.h"
#include "cli/KvxReport.h"
#include "devlink/DeviceText.h"
#include "firmware/KvxImage.h"

namespace quillon {
namespace {

constexpr std::string_view kHelp =
    R"(Usage: kvx <command>

  info FILE     what a KVX file is for and what it holds
  check FILE    says what is wrong with a KVX file; exits with 1 if anything is
  make --device ID --from IMAGE -o FILE [--core | --node-version WORD]
                makes a KVX file from firmware
  --help        this text

  --device ID           the board's USB product id, four hexadecimal digits: 0910
  --from IMAGE          Intel HEX (.hex, .ihx, .ihex) or plain bytes from address 0 on (.bin)
  -o FILE               the KVX file; one that is there already is replaced
  --core                for boards of the node I/O system: the image is for the board itself
  --node-version WORD   or for its nodes, in this version: 0130 is version 1.30

Exit status: 0 all is well, 1 something is wrong with a file, 2 the command line makes no sense.
)";

// Far more than any accepted file needs, so that bytes after its end are seen too.
constexpr std::size_t kMostFileBytes = std::size_t{4} << 20;

int ComplainOfUsage(std::ostream& err, const std::string& sentence) {
  err << "kvx: " << ShownText(sentence) << " See kvx --help.\n";
  return kKvxUsage;
}

int Inspect(const std::string& given, bool check, std::ostream& out, std::ostream& err) {
  const std::string path = ShownText(given);
  const auto content = ReadFile(given, kMostFileBytes);
  if (const auto* problem = std::get_if<FileProblem>(&content)) {
    err << path << ": " << SentenceOn(*problem) << '\n';
    return kKvxBad;
  }
  const auto& text = std::get<std::string>(content);
  const std::vector<std::uint8_t> bytes(text.begin(), text.end());
  auto read = ReadKvxImage(bytes, KvxKindOf(bytes));
  if (const auto* problem = std::get_if<KvxProblem>(&read)) {
    err << path << ": " << DescribeKvxProblem(*problem) << '\n';
    return kKvxBad;
  }
  const auto& image = std::get<KvxImage>(read);
  if (!check) {
    out << DescribeKvxImage(image);
    return kKvxDone;
  }
  const auto faults = FaultsOf(image, bytes.size());
  for (const std::string& fault : faults) err << path << ": " << fault << '\n';
  if (faults.empty()) out << path << ": all is well\n";
  return faults.empty() ? kKvxDone : kKvxBad;
}

int Make(std::span<const std::string> arguments, std::ostream& out, std::ostream& err) {
  const auto request = ParseMakeRequest(arguments);
  if (const auto* wrong = std::get_if<std::string>(&request)) return ComplainOfUsage(err, *wrong);
  if (const auto problem = MakeKvxFile(std::get<MakeRequest>(request), out)) {
    err << ShownText(*problem) << '\n';
    return kKvxBad;
  }
  return kKvxDone;
}

}  // namespace

int KvxMain(std::span<const std::string> arguments, std::ostream& out, std::ostream& err) {
  if (arguments.empty()) {
    err << kHelp;
    return kKvxUsage;
  }
  const std::string& command = arguments[0];
  if (command == "--help" || command == "-h" || command == "help") {
    out << kHelp;
    return kKvxDone;
  }
  if (command == "info" || command == "check") {
    if (arguments.size() != 2) return ComplainOfUsage(err, command + " takes one file.");
    return Inspect(arguments[1], command == "check", out, err);
  }
  if (command == "make") return Make(arguments.subspan(1), out, err);
  return ComplainOfUsage(err, "There is no command \"" + command + "\".");
}

}  // namespace quillon
