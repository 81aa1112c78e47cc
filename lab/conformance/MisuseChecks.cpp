// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>
#include <random>
#include <set>
#include <span>

#include "conformance/Checks.h"

namespace quillon::conformance {
namespace {

// Each of these may take as long as a library waits for an answer, so they use only one board of
// each type.
std::vector<FoundBoard> OneOfEachType(Subject& subject) {
  std::vector<FoundBoard> out;
  std::set<std::uint32_t> types;
  for (const FoundBoard& board : subject.Boards())
    if (board.CanBeAsked() && types.insert(board.type).second) out.push_back(board);
  return out;
}

void ExpectNoAnswer(Subject& subject, const FoundBoard& board, const std::string& request,
                    Findings& findings) {
  HidPacket packet;
  packet.fill(0x5C);
  const HidPacket before = packet;
  Clock::duration took{};
  const bool answered = subject.Read(board, packet, took);
  findings.Expect(!answered, board.name + ": ReadData has an answer to " + request + ".");
  findings.Expect(answered || packet == before,
                  board.name + ": a ReadData that failed changed the buffer.");
  findings.Expect(took < kAnswerLimit, board.name + ": ReadData took longer than 3 seconds.");
}

void ReadsWithoutARequest(Subject& subject, Findings& findings) {
  const std::vector<FoundBoard> boards = OneOfEachType(subject);
  for (const FoundBoard& board : boards) ExpectNoAnswer(subject, board, "no request", findings);
  if (boards.empty()) return;
  subject.Ask(boards.front(), boards.front().questions.front());
  ExpectNoAnswer(subject, boards.front(), "a request whose answer was read", findings);
}

void OtherReportNumbers(Subject& subject, Findings& findings) {
  for (const FoundBoard& board : OneOfEachType(subject)) {
    HidPacket packet = board.questions.front();
    Clock::duration took{};
    subject.Write(board, packet, took);  // whose answer is not that of the next request
    packet[0] = 1;
    const std::string where = board.name + ", report number 1: ";
    const bool refused = subject.Write(board, packet, took) == KVUSB_WRITE_FAILED;
    findings.Expect(took < kAnswerLimit, where + "WriteData took longer than 3 seconds.");
    if (refused) {
      ExpectNoAnswer(subject, board, "a request that was refused", findings);
      continue;
    }
    subject.Read(board, packet, took);
    findings.Expect(took < kAnswerLimit, where + "ReadData took longer than 3 seconds.");
  }
  subject.Refresh();
  ExpectAllAnswer(subject, findings);
}

std::vector<DeviceRecord> Garbage() {
  constexpr unsigned kSeed = 20011;
  std::vector<DeviceRecord> records(4);
  std::memset(&records[0], 0, sizeof(DeviceRecord));
  std::memset(&records[1], 0xFF, sizeof(DeviceRecord));
  std::mt19937 random(kSeed);
  for (DeviceRecord& record : std::span(records).subspan(2)) {
    std::array<std::uint8_t, sizeof(DeviceRecord)> bytes{};
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
    std::memcpy(&record, bytes.data(), bytes.size());
  }
  return records;
}

void GarbageIsRefused(Subject& subject, Findings& findings) {
  std::vector<DeviceRecord> records = Garbage();
  for (std::size_t i = 0; i < records.size(); ++i) {
    FoundBoard board;
    board.record = &records[i];
    HidPacket question{};
    question[kCommandByte] = kIdentityQuery;
    const std::string where = "Garbage " + std::to_string(i + 1) + ": ";
    const Exchange exchange = subject.Ask(board, question);
    findings.Expect(!exchange.written, where + "WriteData did not fail.");
    findings.Expect(!exchange.answered, where + "ReadData did not fail.");
    ExpectInTime(findings, where, exchange);
  }
  // May succeed or fail, but must come back.
  subject.Library().CloseDevices(records);
  ExpectAllAnswer(subject, findings);
}

}  // namespace

std::vector<Check> MisuseChecks() {
  return {
      {"misuse: reading without a request", ReadsWithoutARequest},
      {"misuse: another report number", OtherReportNumbers},
      {"misuse: records of garbage", GarbageIsRefused},
  };
}

}  // namespace quillon::conformance
