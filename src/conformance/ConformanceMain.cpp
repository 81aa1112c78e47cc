// SPDX-License-Identifier: MIT
#include "conformance/ConformanceMain.h"

#include <algorithm>
#include <cstdio>

#include "conformance/Checks.h"
#include "conformance/DepartureChecks.h"
#include "conformance/Options.h"
#include "devlink/DeviceText.h"
#include "devlink/LoadedLibrary.h"

namespace quillon {
namespace {

using namespace conformance;

void ListBoards(Subject& subject, std::ostream& out) {
  out << "Looking for boards\n" << std::flush;
  subject.Detect();
  const Problem problem = subject.Library().DescribeProblem(nullptr);
  if (problem.kind != KVUSB_PROBLEM_NONE) out << "Problem: " << ShownText(problem.sentence) << '\n';
  if (subject.Boards().empty()) out << "  none\n";
  for (std::size_t i = 0; i < subject.Boards().size(); ++i) {
    const FoundBoard& board = subject.Boards()[i];
    const DeviceRecord& record = *board.record;
    out << "  " << i + 1 << "  " << HexWord(record.product_id, 4) << " version "
        << HexWord(record.version, 4) << ' ' << TypeName(board.type) << "  "
        << ShownText(record.product_text) << " | " << ShownText(record.manufacturer) << " | "
        << ShownText(record.serial_number) << '\n';
    if (board.problem.kind != KVUSB_PROBLEM_NONE)
      out << "     " << ShownText(board.problem.sentence) << '\n';
  }
}

void Run(const std::vector<Check>& checks, Subject& subject, Report& report) {
  for (const Check& check : checks) {
    report.Begin(check.name);
    Findings findings;
    subject.Refresh();
    check.run(subject, findings);
    report.End(findings);
  }
}

std::string Median(std::vector<Clock::duration> times) {
  if (times.empty()) return "not measured";
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  char text[32] = "";
  std::snprintf(text, sizeof text, "%.3f ms",
                std::chrono::duration<double, std::milli>(*middle).count());
  return text;
}

}  // namespace

int ConformanceMain(std::span<const std::string> arguments,
                    const std::filesystem::path& program_folder, const ConformanceIo& io) {
  const auto parsed = ParseOptions(arguments);
  if (const auto* wrong = std::get_if<std::string>(&parsed)) {
    io.err << "kvusb-conformance: " << *wrong << " See kvusb-conformance --help.\n";
    return kNothingExamined;
  }
  const auto& options = std::get<Options>(parsed);
  if (options.help) {
    io.out << kHelp;
    return kPromisesKept;
  }
  const auto file = ChooseLibrary(options.library, program_folder);
  io.out << "Library " << file.string() << '\n' << std::flush;
  auto loaded = Subject::Load(file);
  if (const auto* reason = std::get_if<std::string>(&loaded)) {
    io.err << *reason << '\n';
    return kNothingExamined;
  }
  const auto& subject = std::get<std::unique_ptr<Subject>>(loaded);
  Report report(io.out);
  Times times;
  if (subject->SetHandler() != nullptr) subject->ListenForEvents(true);
  ListBoards(*subject, io.out);
  Run(DetectionChecks(times), *subject, report);
  Run(ExchangeChecks(times), *subject, report);
  Run(ClosingChecks(times), *subject, report);
  Run(ProblemChecks(), *subject, report);
  Run(MisuseChecks(), *subject, report);
  Run(DepartureChecks(options, io), *subject, report);
  Run({EventCheck()}, *subject, report);
  io.out << "Detection of all types: " << Median(times.detections)
         << ", an exchange: " << Median(times.exchanges) << " (medians)\n";
  report.Finish();
  return report.HasFailed() ? kPromisesBroken : kPromisesKept;
}

}  // namespace quillon
