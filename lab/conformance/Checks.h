// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "conformance/Report.h"
#include "conformance/Subject.h"

// What kvusb.h promises, promise by promise. A check begins after a fresh detection and may leave
// the boards closed. None of them changes anything on a board, except those of DepartureChecks.h.
namespace quillon::conformance {

struct Check {
  std::string name;
  std::function<void(Subject&, Findings&)> run;
};

// What was measured on the way.
struct Times {
  std::vector<Clock::duration> detections, exchanges;
};

std::vector<Check> DetectionChecks(Times& times);
std::vector<Check> ExchangeChecks(Times& times);
// Wrong requests: garbage for a record, no request at all, a report number that boards do not have.
std::vector<Check> MisuseChecks();
std::vector<Check> ClosingChecks(Times& times);
// How often boards were made to leave and seen to come back, by product id: of that events tell.
struct Moves {
  std::map<std::uint16_t, unsigned> left, came;
};

// The optional functions.
std::vector<Check> ProblemChecks();
Check EventCheck(const Moves& moves);
// Looks at all calls before it. In every other check an exception counts as a failure of the
// function.
Check ExceptionCheck();

// Sentences that many checks need.
std::string Asking(const FoundBoard& board, const HidPacket& question);
bool ExpectInTime(Findings& findings, const std::string& what, const Exchange& exchange);
// Every board that can be asked answers its first question with its echo.
void ExpectAllAnswer(Subject& subject, Findings& findings);

}  // namespace quillon::conformance
