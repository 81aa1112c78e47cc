// SPDX-License-Identifier: MIT
#include <cstddef>

#include "conformance/Checks.h"
#include "conformance/Process.h"

namespace quillon::conformance {
namespace {

constexpr std::size_t kCycles = 50;

void NoBoardsCanBeClosed(Subject& subject, Findings& findings) {
  DeviceRecord none{};
  const std::span<DeviceRecord> table(&none, 1);
  findings.Expect(subject.Library().CloseDevices(table.first(0)) != 0,
                  "Closing 0 boards is a failure.");
  ExpectAllAnswer(subject, findings);
}

void ClosedRecordsAreDead(Subject& subject, Findings& findings) {
  if (subject.Boards().empty()) return;
  findings.Expect(subject.Close(), "CloseDevices failed.");
  for (const FoundBoard& board : subject.Boards()) {
    HidPacket question{};
    if (board.CanBeAsked()) question = board.questions.front();
    question[kCommandByte] = board.CanBeAsked() ? question[kCommandByte] : kIdentityQuery;
    const Exchange exchange = subject.Ask(board, question);
    findings.Expect(!exchange.written, board.name + ": WriteData succeeds on a closed record.");
    findings.Expect(!exchange.answered, board.name + ": ReadData succeeds on a closed record.");
    findings.Expect(exchange.write_time < kPromptLimit && exchange.read_time < kPromptLimit,
                    board.name + ": a call on a closed record took longer than a second.");
  }
}

void ClosingTwiceIsHarmless(Subject& subject, Findings& findings) {
  const auto keys = subject.Keys();
  if (keys.empty()) return;
  findings.Expect(subject.Close(), "CloseDevices failed.");
  subject.Close();  // of dead records: may succeed or fail
  subject.Detect();
  findings.Expect(subject.Keys() == keys, "Not the same boards are found after two closings.");
  ExpectAllAnswer(subject, findings);
}

void TheSameBoardsComeBack(Subject& subject, Findings& findings) {
  const auto keys = subject.Keys();
  if (keys.empty()) return;
  findings.Expect(subject.Close(), "CloseDevices failed.");
  subject.Detect();
  findings.Expect(subject.Keys() == keys, "A detection after a closing finds other boards.");
  ExpectAllAnswer(subject, findings);
}

// A library may open a board only at its first exchange, and a kernel may take its time over that.
void OpenOne(Subject& subject, std::size_t turn, Findings& findings) {
  if (subject.Boards().empty()) return;
  const FoundBoard& board = subject.Boards()[turn % subject.Boards().size()];
  if (!board.CanBeAsked()) return;
  findings.Expect(subject.Ask(board, board.questions.front()).answered,
                  board.name + ": no answer any more.");
}

void CyclesKeepNothingOpen(Times& times, Subject& subject, Findings& findings) {
  const std::ptrdiff_t before = OpenDescriptors();
  if (before < 0) return findings.NotTried("this system does not tell what is open");
  const auto keys = subject.Keys();
  for (std::size_t i = 0; i < kCycles; ++i) {
    OpenOne(subject, i, findings);
    subject.Close();
    times.detections.push_back(subject.Detect().took);
  }
  const std::ptrdiff_t after = OpenDescriptors();
  findings.Expect(after == before, "The process had " + std::to_string(before) +
                                       " open descriptors before, " + std::to_string(after) +
                                       " after.");
  findings.Expect(subject.Keys() == keys, "The last detection finds other boards than the first.");
}

}  // namespace

std::vector<Check> ClosingChecks(Times& times) {
  return {
      {"closing: no boards", NoBoardsCanBeClosed},
      {"closing: closed records are dead", ClosedRecordsAreDead},
      {"closing: twice", ClosingTwiceIsHarmless},
      {"closing: the same boards come back", TheSameBoardsComeBack},
      {"closing: open descriptors after " + std::to_string(kCycles) + " times",
       [&times](Subject& subject, Findings& findings) {
         CyclesKeepNothingOpen(times, subject, findings);
       }},
  };
}

}  // namespace quillon::conformance
