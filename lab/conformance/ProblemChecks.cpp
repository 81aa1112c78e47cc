// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cctype>
#include <string>

#include "conformance/Checks.h"
#include "devlink/DeviceText.h"

namespace quillon::conformance {
namespace {

constexpr std::uint32_t kMostBytes = 64;
constexpr char kUnwritten = '\x7E';

void ExpectText(Subject& subject, const DeviceRecord* record, const std::string& name,
                Findings& findings) {
  for (std::uint32_t size = 1; size <= kMostBytes; ++size) {
    std::array<char, kMostBytes + 16> text{};
    text.fill(kUnwritten);
    const std::int32_t kind = subject.DescribeInto(record, text.data(), size);
    const auto limit = text.begin() + static_cast<std::ptrdiff_t>(size);
    const std::string where = name + ", a text of " + std::to_string(size) + " bytes: ";
    findings.Expect(std::all_of(limit, text.end(), [](char c) { return c == kUnwritten; }),
                    where + "bytes behind it were written.");
    findings.Expect(std::find(text.begin(), limit, '\0') != limit, where + "no zero byte.");
    if (kind == KVUSB_PROBLEM_NONE)
      findings.Expect(text[0] == '\0', where + "no problem, but a text.");
    else if (size == kMostBytes)
      findings.Expect(text[0] != '\0', where + "a problem, but no text.");
  }
}

void ProblemsAreTexts(Subject& subject, Findings& findings) {
  if (subject.IsHosted()) return findings.NotTried("in a process of its own");
  if (!subject.HasDescribe()) return findings.NotTried("there is no DescribeProblem");
  ExpectText(subject, nullptr, "The library", findings);
  for (const FoundBoard& board : subject.Boards())
    ExpectText(subject, board.record, board.name, findings);
}

// A board that is listed but cannot be used must say so by failing, not by silence.
void BarredBoardsFail(Subject& subject, Findings& findings) {
  findings.NotTried("no board is held by another program or forbidden");
  for (const FoundBoard& board : subject.Boards()) {
    if (!board.IsBarred()) continue;
    HidPacket question{};
    question[kCommandByte] = kIdentityQuery;
    const Exchange exchange = subject.Ask(board, question);
    findings.Expect(!exchange.written && !exchange.answered,
                    board.name + ": it answers, although it is said to be out of reach.");
    ExpectInTime(findings, board.name + ": it ", exchange);
  }
}

std::string InCapitals(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

bool HasNumber(const std::string& path, const std::string& tag) {
  const auto at = path.find(tag);
  if (at == std::string::npos || path.size() < at + tag.size() + 4) return false;
  return std::all_of(path.begin() + static_cast<std::ptrdiff_t>(at + tag.size()),
                     path.begin() + static_cast<std::ptrdiff_t>(at + tag.size() + 4),
                     [](unsigned char c) { return std::isxdigit(c) != 0; });
}

void ExpectEvent(const ChangeEvent& event, Findings& findings) {
  findings.Expect(event.event == KVUSB_EVENT_ARRIVAL || event.event == KVUSB_EVENT_REMOVAL,
                  "An event has the number " + std::to_string(event.event) + ".");
  findings.Expect(
      event.device_type == KVUSB_DEVICE_INTERFACE,
      "An event is about a device of the type " + std::to_string(event.device_type) + ".");
  const std::string path = InCapitals(event.path);
  findings.Expect(HasNumber(path, "VID_") && HasNumber(path, "PID_"),
                  "The path of an event names no vendor and product: " + event.path);
}

// A system may tell of each interface of a board, so there may be more of them.
void ExpectToldOf(const std::map<std::uint16_t, unsigned>& moved, std::uint32_t kind,
                  const std::string& what, const std::vector<ChangeEvent>& events,
                  Findings& findings) {
  for (const auto& [product, times] : moved) {
    const std::string tag = "PID_" + HexWord(product, 4);
    const auto told = std::count_if(events.begin(), events.end(), [&](const ChangeEvent& event) {
      return event.event == kind && InCapitals(event.path).find(tag) != std::string::npos;
    });
    findings.Expect(told >= static_cast<std::ptrdiff_t>(times),
                    HexWord(product, 4) + ": " + std::to_string(times) + " times a board " + what +
                        ", but " + std::to_string(told) + " events tell of that.");
  }
}

// Last of all, because it looks at the events of the whole run.
void EventsTellWhatHappened(const Moves& moves, Subject& subject, Findings& findings) {
  if (!subject.HasSetHandler()) return findings.NotTried("there is no SetDeviceChangeHandler");
  findings.Expect(subject.ListenForEvents(false), "The handler cannot be taken back.");
  findings.Expect(subject.ListenForEvents(true), "The handler cannot be set again.");
  const auto events = subject.Events();
  for (const ChangeEvent& event : events) ExpectEvent(event, findings);
  ExpectToldOf(moves.left, KVUSB_EVENT_REMOVAL, "left", events, findings);
  ExpectToldOf(moves.came, KVUSB_EVENT_ARRIVAL, "came back", events, findings);
  findings.Note(std::to_string(events.size()) + " events came.");
}

}  // namespace

std::vector<Check> ProblemChecks() {
  return {
      {"problems: texts", ProblemsAreTexts},
      {"problems: boards out of reach", BarredBoardsFail},
  };
}

Check EventCheck(const Moves& moves) {
  return {"events: what came", [&moves](Subject& subject, Findings& findings) {
            EventsTellWhatHappened(moves, subject, findings);
          }};
}

Check ExceptionCheck() {
  return {"exceptions: none leaves a function", [](Subject& subject, Findings& findings) {
            if (subject.IsHosted()) return findings.NotTried("in a process of its own");
            findings.Tried();
            for (const auto& [function, text] : subject.Exceptions())
              findings.Expect(false, function + " threw an exception: " + ShownText(text) + ".");
          }};
}

}  // namespace quillon::conformance
