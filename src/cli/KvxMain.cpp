// SPDX-License-Identifier: MIT
#include "cli/KvxMain.h"

#include "cli/CommandLine.h"
#include "cli/KvxMake.h"
#include "cli/KvxReport.h"
#include "devlink/DeviceText.h"
#include "firmware/KvxImage.h"
#include "storage/FilePath.h"
#include "storage/ReadFile.h"

namespace quillon {
namespace {

// Far more than any accepted file needs, so that bytes after its end are seen too.
constexpr std::size_t kMostFileBytes = std::size_t{4} << 20;

int Inspect(const std::string& given, bool check, std::ostream& out, std::ostream& err) {
  const std::string path = ShownText(given);
  const auto content = ReadFile(FilePath(given), kMostFileBytes);
  if (const auto* problem = std::get_if<FileProblem>(&content)) {
    err << path << ": " << problem->Sentence("It") << '\n';
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

int Make(const MakeRequest& request, std::ostream& out, std::ostream& err) {
  const auto problem = MakeKvxFile(request, out);
  if (problem) err << ShownText(*problem) << '\n';
  return problem ? kKvxBad : kKvxDone;
}

}  // namespace

int KvxMain(std::span<const std::string> arguments, std::ostream& out, std::ostream& err) {
  CLI::App app("Tells what is in KVX files, checks and makes them.", "kvx");
  // A command that does not exist has to be named, so that there is one is asked last.
  app.require_subcommand(0, 1);
  app.callback([&] {
    if (app.get_subcommands().empty()) throw CLI::RequiredError("A command");
  });
  app.footer(
      "Exit status: 0 all is well, 1 something is wrong with a file, 2 the command line makes no "
      "sense.");
  std::string file;
  auto* const info = app.add_subcommand("info", "what a KVX file is for and what it holds");
  auto* const check =
      app.add_subcommand("check", "what is wrong with a KVX file; exits with 1 if anything is");
  for (auto* const command : {info, check})
    command->add_option("FILE", file)->required()->type_name("");
  MakeRequest request;
  auto* const make = app.add_subcommand("make", "makes a KVX file from firmware");
  AddMakeOptions(*make, request);
  if (arguments.empty()) {
    err << app.help();
    return kKvxUsage;
  }
  if (arguments[0] == "help") {
    out << app.help();
    return kKvxDone;
  }
  if (const auto status = ReadCommandLine(app, arguments, out, err, kKvxUsage)) return *status;
  return make->parsed() ? Make(request, out, err) : Inspect(file, check->parsed(), out, err);
}

}  // namespace quillon
