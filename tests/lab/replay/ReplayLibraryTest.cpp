// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "devlink/DeviceTable.h"
#include "devlink/LoadedLibrary.h"
#include "devlink/TracedLibrary.h"
#include "kvusb/HidPacket.h"
#include "sim/Bus.h"
#include "testing/Environment.h"
#include "testing/OwnFolders.h"

namespace quillon {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;

// All that came back from the calls of a session, one text per call.
using Answers = std::vector<std::string>;

// A program that keeps its boards in a table, as the window does.
class Program {
 public:
  explicit Program(HidLibrary& library) : library_(library) {}

  void Detect() {
    answers.push_back("close " + std::to_string(library_.CloseDevices(table_.Boards())));
    table_.Clear();
    for (const std::uint32_t type : {2U, 1U, 3U}) {
      std::uint32_t count = 0;
      const auto free = table_.Free();
      const std::int32_t result = library_.DetectHID(count, free, type);
      answers.push_back("detect " + std::to_string(result));
      if (result == 0) continue;
      for (const DeviceRecord& record : free.first(count)) answers.push_back(Shown(record));
      table_.Append(count, type);
    }
  }
  void Ask(std::uint32_t index, std::uint8_t command) {
    HidPacket packet{};
    packet[kCommandByte] = command;
    const std::int32_t written = library_.WriteData(table_.Record(index), packet);
    packet[64] = 0xC3;
    const std::int32_t read = library_.ReadData(table_.Record(index), packet);
    answers.push_back(std::to_string(written) + " " + std::to_string(read) +
                      std::string(packet.begin(), packet.end()));
  }
  Problem ProblemOfLibrary() { return library_.DescribeProblem(nullptr); }

  Answers answers;

 private:
  static std::string Shown(const DeviceRecord& record) {
    DeviceRecord shown = record;
    std::memset(shown.library_a, 0, sizeof shown.library_a);  // the library's own
    return {reinterpret_cast<const char*>(&shown), sizeof shown};
  }

  HidLibrary& library_;
  DeviceTable table_;
};

std::unique_ptr<HidLibrary> LoadReplay(const std::string& trace) {
  const auto file = testing::OwnFolders::Root() / "session.trace";
  std::ofstream(file, std::ios::binary) << trace;
  testing::SetVariable("QUILLON_REPLAY", file.string());
  auto loaded = LoadLibraryFile(KVUSB_REPLAY_FILE);
  return std::get<std::unique_ptr<HidLibrary>>(std::move(loaded));
}

// Detects, asks boards of each type, lets one fail, detects again upon an event, and ends.
void RunSession(Program& program) {
  program.Detect();
  program.Ask(0, 0x11);
  program.Ask(1, 0x12);
  program.Ask(2, 0x06);
  program.Ask(1, 0x13);  // vanishes
  program.Detect();
  program.Ask(1, 0x06);
}

constexpr const char* kRig = R"({"boards": [
  {"id": "a", "product": "0x0910", "firmware": "2.82", "name_hex": "4A 07 FF..."},
  {"id": "b", "product": "0x0920", "firmware": "1.20",
   "faults": [{"kind": "vanish", "command": "0x13"}]},
  {"id": "c", "product": "0x0910", "firmware": "2.71", "mode": "flash"},
  {"id": "d", "product": "0x1500", "firmware": "1.10"}]})";

// A session with simulated boards: its trace, and what the program got.
std::pair<std::string, Answers> RecordSession() {
  sim::Bus bus(std::get<sim::Rig>(sim::ParseRig(kRig)), {.latency = std::chrono::microseconds(0)});
  std::ostringstream trace;
  TracedLibrary traced(
      bus, [&](auto text) { return trace << text, std::nullopt; }, [] { return 0.0; });
  Program program(traced);
  RunSession(program);
  return {trace.str(), program.answers};
}

TEST(ReplayLibrary, AnswersAsTheBoardsDidToTheLastByte) {
  const auto [trace, answers] = RecordSession();
  const auto library = LoadReplay(trace);
  Program program(*library);
  EXPECT_EQ(program.ProblemOfLibrary(), Problem());
  RunSession(program);
  ASSERT_EQ(program.answers.size(), answers.size());
  for (std::size_t i = 0; i < answers.size(); ++i) EXPECT_EQ(program.answers[i], answers[i]) << i;
  EXPECT_EQ(program.ProblemOfLibrary().kind, KVUSB_PROBLEM_OTHER);
  EXPECT_THAT(program.ProblemOfLibrary().sentence,
              EndsWith("session.trace has ended after 18 calls."));
}

TEST(ReplayLibrary, FailsFromTheFirstDifferenceOnAndSaysWhere) {
  const auto [trace, answers] = RecordSession();
  const auto library = LoadReplay(trace);
  Program program(*library);
  program.Detect();
  program.Ask(0, 0x12);
  program.Ask(0, 0x11);
  EXPECT_EQ(program.answers.back().substr(0, 3), "1 1");
  program.Detect();
  EXPECT_EQ(program.answers.back(), "detect 0");
  EXPECT_THAT(program.ProblemOfLibrary().sentence,
              AllOf(HasSubstr("left the trace"),
                    HasSubstr("Trace line 10 expected: write 0 : 00 00 00 00 11 *"),
                    HasSubstr("got: write 0 : 00 00 00 00 12 *"), EndsWith("differs in byte 4")));
}

void KVUSB_CALL NoteEvent(std::uint32_t event, std::uint32_t type, const char* path,
                          void* context) {
  static_cast<std::vector<std::string>*>(context)->push_back(std::to_string(event) + " " +
                                                             std::to_string(type) + " " + path);
}

TEST(ReplayLibrary, ReportsAnArrivalWhereTheProgramDetectedAgain) {
  const auto [trace, answers] = RecordSession();
  const auto library = LoadReplay(trace);
  Program program(*library);
  std::vector<std::string> events;
  ASSERT_TRUE(library->SetDeviceChangeHandler(NoteEvent, &events));
  program.Detect();
  program.Ask(0, 0x11);
  program.Ask(1, 0x12);
  program.Ask(2, 0x06);
  EXPECT_THAT(events, ::testing::IsEmpty());
  program.Ask(1, 0x13);
  EXPECT_THAT(events, ElementsAre(R"(32768 5 \\?\HID#Vid_4C7E&Pid_0910#replay)"));
  program.Detect();
  program.Ask(1, 0x06);
  EXPECT_EQ(events.size(), 1U) << "the last closing of a session is followed by nothing";
}

TEST(ReplayLibrary, KeepsAnArrivalForAProgramThatNamesItsHandlerLate) {
  const auto library = LoadReplay("close 0 -> 1\ndetect 2 -> 0\nclose 0 -> 1\ndetect 2 -> 0\n");
  std::vector<std::string> events;
  DeviceRecord record{};
  std::uint32_t count = 0;
  ASSERT_TRUE(library->SetDeviceChangeHandler(NoteEvent, &events));
  ASSERT_TRUE(library->SetDeviceChangeHandler(nullptr, nullptr));
  EXPECT_THAT(events, ::testing::IsEmpty()) << "the first detection is the program's own idea";
  EXPECT_EQ(library->CloseDevices({}), 1);
  EXPECT_EQ(library->DetectHID(count, {&record, 1}, 2), 0);
  ASSERT_TRUE(library->SetDeviceChangeHandler(NoteEvent, &events));
  ASSERT_TRUE(library->SetDeviceChangeHandler(NoteEvent, &events));
  EXPECT_EQ(events.size(), 1U);
  HidPacket packet{};
  EXPECT_EQ(library->WriteData(record, packet), KVUSB_WRITE_FAILED);
  ASSERT_TRUE(library->SetDeviceChangeHandler(NoteEvent, &events));
  EXPECT_EQ(events.size(), 1U) << "the trace is left";
}

TEST(ReplayLibrary, WithoutATraceThereAreNoBoardsAndASentence) {
  const std::string crowd = [] {
    std::string text = "detect 2 -> 1 boards 257\n";
    for (int i = 0; i < 257; ++i)
      text += "board pid 0910 version 0100 product \"\" maker \"\" serial \"\"\n";
    return text;
  }();
  const auto [trace, answers] = RecordSession();
  const std::pair<std::string, const char*> cases[] = {
      {"", "is empty"},
      {"hello\n", "Line 1 is no call: hello"},
      {trace.substr(0, trace.find("board pid") + 20), "ends where a board should stand"},
      {crowd, "more boards than a bus can hold"},
  };
  for (const auto& [text, problem] : cases) {
    const auto library = LoadReplay(text);
    Program program(*library);
    program.Detect();
    EXPECT_THAT(program.answers, ElementsAre("close 1", "detect 0", "detect 0", "detect 0"));
    EXPECT_THAT(program.ProblemOfLibrary().sentence,
                AllOf(HasSubstr("session.trace"), HasSubstr(problem)));
  }
  for (const auto& [file, sentence] :
       {std::pair("/nowhere/at.all",
                  "The trace /nowhere/at.all cannot be opened: No such file or directory."),
        std::pair("/tmp", "The trace /tmp is a folder."),
        std::pair("", "QUILLON_REPLAY names no trace to play.")}) {
    testing::SetVariable("QUILLON_REPLAY", file);
    auto loaded = LoadLibraryFile(KVUSB_REPLAY_FILE);
    const auto& library = std::get<std::unique_ptr<HidLibrary>>(loaded);
    EXPECT_EQ(library->DescribeProblem(nullptr).sentence, sentence);
  }
}

// A bug report's trace often ends in the middle of something.
TEST(ReplayLibrary, PlaysACutTraceUpToItsEnd) {
  const auto [trace, answers] = RecordSession();
  const auto library = LoadReplay(trace.substr(0, trace.find("write 1")));
  Program program(*library);
  program.Detect();
  program.Ask(0, 0x11);
  EXPECT_EQ(program.answers.back(), answers[program.answers.size() - 1]);
  EXPECT_THAT(program.ProblemOfLibrary().sentence, HasSubstr("has ended"));
}

}  // namespace
}  // namespace quillon
