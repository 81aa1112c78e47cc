// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>

#include "conformance/Checks.h"

namespace quillon::conformance {

std::string Asking(const FoundBoard& board, const HidPacket& question) {
  return board.name + ", command " + HexWord(question[kCommandByte], 2) + ": ";
}

bool ExpectInTime(Findings& findings, const std::string& what, const Exchange& exchange) {
  return findings.Expect(exchange.IsInTime(), what + "took longer than 3 seconds.");
}

void ExpectAllAnswer(Subject& subject, Findings& findings) {
  for (const FoundBoard& board : subject.Boards()) {
    if (!board.CanBeAsked()) continue;
    const HidPacket& question = board.questions.front();
    const Exchange exchange = subject.Ask(board, question);
    findings.Expect(exchange.answered && exchange.buffer[kEchoByte] == question[kCommandByte],
                    Asking(board, question) + "no answer any more.");
  }
}

namespace {

constexpr int kRow = 200;

using Report64 = std::array<std::uint8_t, KVUSB_PACKET_BYTES - 1>;

Report64 ReportOf(const Exchange& exchange) {
  Report64 report{};
  std::copy_n(exchange.buffer.begin(), report.size(), report.begin());
  return report;
}

// Asks each board each of its questions once.
template <typename Judge>
void ForEveryQuestion(Subject& subject, Judge judge) {
  for (const FoundBoard& board : subject.Boards()) {
    if (!board.CanBeAsked()) continue;
    for (const HidPacket& question : board.questions) judge(board, question);
  }
}

// Whether there is an answer; its echo is another check's matter.
bool ExpectAnswer(Findings& findings, const std::string& where, const Exchange& exchange) {
  ExpectInTime(findings, where, exchange);
  return findings.Expect(exchange.written, where + "the request was not sent.") &&
         findings.Expect(exchange.answered, where + "there is no answer.");
}

void AnswersCarryTheEcho(Subject& subject, Findings& findings) {
  ForEveryQuestion(subject, [&](const FoundBoard& board, const HidPacket& question) {
    const std::string where = Asking(board, question);
    const Exchange exchange = subject.Ask(board, question);
    if (!ExpectAnswer(findings, where, exchange)) return;
    findings.Expect(exchange.buffer[kEchoByte] == question[kCommandByte],
                    where + "byte 0 is " + HexWord(exchange.buffer[kEchoByte], 2) + ".");
  });
}

void LastByteStays(Subject& subject, Findings& findings) {
  ForEveryQuestion(subject, [&](const FoundBoard& board, const HidPacket& question) {
    const Exchange exchange = subject.Ask(board, question);
    findings.Expect(exchange.buffer.back() == exchange.before_read.back(),
                    Asking(board, question) + "byte 64 is not as it was before ReadData.");
  });
}

void RequestsStay(Subject& subject, Findings& findings) {
  ForEveryQuestion(subject, [&](const FoundBoard& board, const HidPacket& question) {
    const Exchange exchange = subject.Ask(board, question);
    findings.Expect(exchange.as_written == question,
                    Asking(board, question) + "WriteData changed the packet.");
  });
}

void AnswersRepeat(Subject& subject, Findings& findings) {
  ForEveryQuestion(subject, [&](const FoundBoard& board, const HidPacket& question) {
    const Report64 first = ReportOf(subject.Ask(board, question));
    findings.Expect(ReportOf(subject.Ask(board, question)) == first,
                    Asking(board, question) + "two answers differ.");
  });
}

// One lost answer shifts all that follow: alternating questions show it where a board has two.
void RowOfExchanges(Times& times, Subject& subject, Findings& findings) {
  for (const FoundBoard& board : subject.Boards()) {
    if (!board.CanBeAsked()) continue;
    std::vector<Report64> expected;
    expected.reserve(board.questions.size());
    for (const HidPacket& question : board.questions)
      expected.push_back(ReportOf(subject.Ask(board, question)));
    for (int i = 0; i < kRow; ++i) {
      const std::size_t which = static_cast<std::size_t>(i) % expected.size();
      const std::string where =
          "Exchange " + std::to_string(i + 1) + " with " + Asking(board, board.questions[which]);
      const Exchange exchange = subject.Ask(board, board.questions[which]);
      if (!ExpectAnswer(findings, where, exchange)) break;
      times.exchanges.push_back(exchange.write_time + exchange.read_time);
      if (!findings.Expect(ReportOf(exchange) == expected[which], where + "another's answer."))
        break;
    }
  }
}

// What is left of an exchange that was given up is not the next one's answer.
void UnreadAnswersAreDropped(Subject& subject, Findings& findings) {
  for (const FoundBoard& board : subject.Boards()) {
    if (!board.CanBeAsked() || board.questions.size() < 2) continue;
    HidPacket unread = board.questions.back();
    Clock::duration took{};
    subject.Write(board, unread, took);
    const HidPacket& question = board.questions.front();
    const Exchange exchange = subject.Ask(board, question);
    findings.Expect(exchange.answered && exchange.buffer[kEchoByte] == question[kCommandByte],
                    Asking(board, question) + "not its answer, where an earlier one was not read.");
  }
}

// All requests out before the first answer is read.
void BoardsInTurn(Subject& subject, Findings& findings) {
  std::vector<const FoundBoard*> boards;
  std::vector<Report64> alone;
  for (const FoundBoard& board : subject.Boards()) {
    if (!board.CanBeAsked()) continue;
    boards.push_back(&board);
    alone.push_back(ReportOf(subject.Ask(board, board.questions.back())));
  }
  if (boards.size() < 2) return findings.NotTried("it takes two boards");
  for (const bool backwards : {false, true}) {
    Clock::duration took{};
    std::vector<HidPacket> packets;
    for (const FoundBoard* board : boards) {
      packets.push_back(board->questions.back());
      subject.Write(*board, packets.back(), took);
    }
    for (std::size_t n = 0; n < boards.size(); ++n) {
      const std::size_t i = backwards ? boards.size() - 1 - n : n;
      const bool answered = subject.Read(*boards[i], packets[i], took);
      findings.Expect(answered && std::equal(alone[i].begin(), alone[i].end(), packets[i].begin()),
                      boards[i]->name + ": not its own answer when all boards are asked at once.");
    }
  }
}

}  // namespace

std::vector<Check> ExchangeChecks(Times& times) {
  return {
      {"exchange: echo", AnswersCarryTheEcho},
      {"exchange: byte 64 of the buffer", LastByteStays},
      {"exchange: requests are not changed", RequestsStay},
      {"exchange: same question, same answer", AnswersRepeat},
      {"exchange: " + std::to_string(kRow) + " in a row",
       [&times](Subject& subject, Findings& findings) {
         RowOfExchanges(times, subject, findings);
       }},
      {"exchange: unread answers", UnreadAnswersAreDropped},
      {"exchange: boards in turn", BoardsInTurn},
  };
}

}  // namespace quillon::conformance
