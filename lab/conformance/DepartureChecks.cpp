// SPDX-License-Identifier: MIT
#include "conformance/DepartureChecks.h"

#include <algorithm>
#include <functional>
#include <iterator>

namespace quillon::conformance {
namespace {

using Keys = std::vector<std::string>;
using Pause = std::function<void(std::chrono::milliseconds)>;

constexpr std::uint8_t kRestart = 9;
constexpr std::chrono::milliseconds kRestartLimit(10'000);
// A board leaves a little after its answer, and a system takes note a little after that.
constexpr std::chrono::milliseconds kGoneLimit(2'000);

HidPacket Command(std::uint8_t command) {
  HidPacket packet{};
  packet[kCommandByte] = command;
  return packet;
}

Keys Without(Keys keys, const std::string& key) {
  const auto found = std::find(keys.begin(), keys.end(), key);
  if (found != keys.end()) keys.erase(found);
  return keys;
}

// Until the condition holds, with pauses that add up to the limit at most.
bool Await(std::chrono::milliseconds limit, const Pause& pause,
           const std::function<bool()>& condition) {
  constexpr std::chrono::milliseconds kPause(50);
  for (auto paused = kPause; !condition(); paused += kPause) {
    if (paused > limit) return false;
    pause(kPause);
  }
  return true;
}

// True when exactly these boards are listed and answer: a system may list a board before it lets a
// program use it.
bool Finds(Subject& subject, const Keys& keys) {
  subject.Refresh();
  if (subject.Keys() != keys) return false;
  const auto& boards = subject.Boards();
  return std::all_of(boards.begin(), boards.end(), [&](const FoundBoard& board) {
    return !board.CanBeAsked() || subject.Ask(board, board.questions.front()).answered;
  });
}

void ExpectGone(Subject& subject, const FoundBoard& board, Findings& findings) {
  const HidPacket question =
      board.questions.empty() ? Command(kIdentityQuery) : board.questions.front();
  const Exchange exchange = subject.Ask(board, question);
  findings.Expect(!exchange.written && !exchange.answered,
                  board.name + ": calls on its record succeed after it has left.");
  ExpectInTime(findings, board.name + ": a call after it has left ", exchange);
}

// Whether the board said that it restarts.
bool RestartOne(Subject& subject, const FoundBoard& board, const Pause& pause, Findings& findings) {
  const std::string where = board.name + ", restart: ";
  const Exchange exchange = subject.Ask(board, Command(kRestart));
  const bool restarts = findings.Expect(exchange.answered && exchange.buffer[kEchoByte] == kRestart,
                                        where + "no answer.");
  ExpectInTime(findings, where, exchange);
  if (board.CanBeAsked()) {
    const HidPacket& question = board.questions.front();
    // A library may carry a record over a restart.
    Await(kGoneLimit, pause, [&] {
      const Exchange after = subject.Ask(board, question);
      findings.Expect(!after.answered || after.buffer[kEchoByte] == question[kCommandByte],
                      where + "the old record gives wrong answers.");
      ExpectInTime(findings, where + "a call on the old record ", after);
      return !after.answered;
    });
  }
  return restarts;
}

// No detection before all have restarted: it may list them in another order, and boards that look
// the same could not be told apart.
void BoardsRestart(const Pause& pause, Moves& moves, Subject& subject, Findings& findings) {
  const Keys keys = subject.Keys();
  std::vector<std::uint16_t> products;
  for (const FoundBoard& board : subject.Boards()) {
    if (board.IsBarred() || !RestartOne(subject, board, pause, findings)) continue;
    products.push_back(board.record->product_id);
  }
  if (!findings.WasTried()) return;
  const bool found =
      findings.Expect(Await(kRestartLimit, pause, [&] { return Finds(subject, keys); }),
                      "Not the same boards are found again in 10 seconds.");
  for (const std::uint16_t product : products) {
    ++moves.left[product];
    if (found) ++moves.came[product];
  }
  ExpectAllAnswer(subject, findings);
}

void OneVanishes(const VanishOrder& order, const Pause& pause, Moves& moves, Subject& subject,
                 Findings& findings) {
  auto& boards = subject.Boards();
  const auto found = std::find_if(boards.begin(), boards.end(), [&](const FoundBoard& board) {
    return board.record->product_id == order.product && !board.IsBarred();
  });
  if (found == boards.end()) {
    findings.Expect(false, "There is no board " + HexWord(order.product, 4) + ".");
    return;
  }
  const FoundBoard board = *found;  // a copy: a detection replaces the list
  const Keys left = Without(subject.Keys(), board.key);
  const Exchange exchange = subject.Ask(board, Command(order.command));
  if (findings.Expect(!exchange.answered,
                      board.name + ": it answers the command that it leaves at.")) {
    ++moves.left[order.product];
  }
  findings.Expect(exchange.answered || exchange.buffer == exchange.before_read,
                  board.name + ": a ReadData that failed changed the buffer.");
  ExpectInTime(findings, board.name + ": the exchange during which it leaves ", exchange);
  ExpectGone(subject, board, findings);
  for (FoundBoard& other : subject.Boards())
    if (other.record == board.record) other.questions.clear();
  ExpectAllAnswer(subject, findings);
  findings.Expect(Await(kGoneLimit, pause, [&] { return Finds(subject, left); }),
                  board.name + ": a detection does not find just the other boards.");
  ExpectAllAnswer(subject, findings);
}

// Boards that do not answer any more; they must be those that a detection misses.
void APersonPullsOne(const ConformanceIo& io, Subject& subject, Findings& findings) {
  if (subject.Boards().empty()) return;
  io.out << "\n    Pull one board, then press Enter. " << std::flush;
  std::string line;
  if (!std::getline(io.in, line)) return findings.NotTried("nobody pressed Enter");
  const Keys before = subject.Keys();
  Keys silent;
  std::size_t mute = 0;
  for (const FoundBoard& board : subject.Boards()) {
    if (!board.CanBeAsked()) ++mute;
    if (!board.CanBeAsked() || subject.Ask(board, board.questions.front()).answered) continue;
    silent.push_back(board.key);
    ExpectGone(subject, board, findings);
  }
  std::sort(silent.begin(), silent.end());
  subject.Refresh();
  const Keys after = subject.Keys();
  Keys missing;
  std::set_difference(before.begin(), before.end(), after.begin(), after.end(),
                      std::back_inserter(missing));
  findings.Expect(!missing.empty(), "A detection finds all boards that were there before.");
  findings.Expect(std::includes(missing.begin(), missing.end(), silent.begin(), silent.end()),
                  "A board is found, although it did not answer.");
  findings.Expect(missing.size() <= silent.size() + mute,
                  "A board answers, although it is not found.");
  ExpectAllAnswer(subject, findings);
}

}  // namespace

std::vector<Check> DepartureChecks(const Options& options, const ConformanceIo& io, Moves& moves) {
  std::vector<Check> checks;
  if (options.restart) {
    checks.push_back(
        {"leaving: every board restarts", [&io, &moves](Subject& subject, Findings& findings) {
           BoardsRestart(io.pause, moves, subject, findings);
         }});
  }
  if (options.vanish) {
    checks.push_back({"leaving: board " + HexWord(options.vanish->product, 4) + " vanishes",
                      [order = *options.vanish, &io, &moves](Subject& subject, Findings& findings) {
                        OneVanishes(order, io.pause, moves, subject, findings);
                      }});
  }
  if (options.unplug) {
    checks.push_back({"leaving: a board is pulled", [&io](Subject& subject, Findings& findings) {
                        APersonPullsOne(io, subject, findings);
                      }});
  }
  return checks;
}

}  // namespace quillon::conformance
