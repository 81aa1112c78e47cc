// SPDX-License-Identifier: MIT
#include "conformance/ConformanceMain.h"

#include <algorithm>
#include <cstdio>

#include "conformance/Checks.h"
#include "conformance/DepartureChecks.h"
#include "conformance/Options.h"
#include "devlink/DeviceText.h"
#include "devlink/LoadedLibrary.h"
#include "kvusb/host/OpenLibrary.h"

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

// The keys of the boards that the first detection found. If some are lost later, a check must not
// pass because it has nothing left to do.
using Keys = std::vector<std::string>;

void Run(const std::vector<Check>& checks, const Keys& boards, Subject& subject, Report& report) {
  for (const Check& check : checks) {
    report.Begin(check.name);
    Findings findings;
    subject.Refresh();
    if (subject.Keys() != boards)
      findings.Expect(false, "Before this check a detection found other boards than the first.");
    check.run(subject, findings);
    report.End(findings);
  }
}

Keys AllFound(Subject& subject) {
  subject.Refresh();
  return subject.Keys();
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
  const auto read = ReadOptions(arguments, io.out, io.err);
  if (const auto* const status = std::get_if<int>(&read)) return *status;
  const auto& options = std::get<Options>(read);
  const auto file = ChooseLibrary(options.library, program_folder);
  io.out << "Library " << file.string() << (NeedsHost(file) ? " in a process of its own\n" : "\n")
         << std::flush;
  auto loaded = Subject::Load(file, program_folder);
  if (const auto* reason = std::get_if<std::string>(&loaded)) {
    io.err << *reason << '\n';
    return kNothingExamined;
  }
  const auto& subject = std::get<std::unique_ptr<Subject>>(loaded);
  Report report(io.out);
  Times times;
  if (subject->HasSetHandler()) subject->ListenForEvents(true);
  ListBoards(*subject, io.out);
  const Keys boards = subject->Keys();
  for (const auto& checks : {DetectionChecks(times), ExchangeChecks(times), ClosingChecks(times),
                             ProblemChecks(), MisuseChecks()}) {
    Run(checks, boards, *subject, report);
  }
  Moves moves;
  for (const Check& check : DepartureChecks(options, io, moves))
    Run({check}, AllFound(*subject), *subject, report);
  Run({EventCheck(moves), ExceptionCheck()}, AllFound(*subject), *subject, report);
  io.out << "Detection of all types: " << Median(times.detections)
         << ", an exchange: " << Median(times.exchanges) << " (medians)\n";
  if (boards.empty()) io.out << "There was no board to try most promises on.\n";
  report.Finish();
  if (report.HasFailed()) return kPromisesBroken;
  return boards.empty() ? kNothingExamined : kPromisesKept;
}

}  // namespace quillon
