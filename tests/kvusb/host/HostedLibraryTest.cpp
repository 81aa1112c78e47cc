// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "kvusb/host/HostedLibrary.h"
#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <condition_variable>
#include <csignal>
#include <fstream>
#include <future>
#include <thread>

#include "devlink/Exchange.h"
#include "kvusb/host/OpenLibrary.h"
#include "kvusb/host/PeFile.h"
#include "testing/OwnFolders.h"

namespace quillon::host {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// What the fixture library does at a command.
constexpr std::uint8_t kNothing = 1, kCrash = 0xC0, kHang = 0xC1, kExit = 0xC2, kTell = 0xC3,
                       kTellLater = 0xC4, kBefool = 0xC5;

// With time for a busy machine.
HostedOptions Options(std::function<void()> when_ended = {}) {
  return {.program = HOST_PROGRAM,
          .library = TROUBLE_LIBRARY,
          .when_ended = std::move(when_ended),
          .prompt_limit = 9s,
          .answer_limit = 9s};
}

std::string ProblemOf(const std::variant<std::unique_ptr<HidLibrary>, std::string>& started) {
  const auto* const problem = std::get_if<std::string>(&started);
  return problem == nullptr ? "it was started" : *problem;
}

// The fixture's two boards, found in the middle of a table as a second type of boards is.
struct TwoBoards {
  explicit TwoBoards(HostedOptions options = Options())
      : library(std::get<std::unique_ptr<HidLibrary>>(HostedLibrary::Start(std::move(options)))) {
    Detect();
  }
  bool Detect() {
    std::uint32_t count = 77;
    EXPECT_EQ(library->DetectHID(count, table, KVUSB_TYPE_LOADER), 0);
    EXPECT_EQ(count, 77U);
    return library->DetectHID(count, std::span(table).subspan(1), KVUSB_TYPE_FIRMWARE) == 7 &&
           count == 2;
  }
  bool Exchange(DeviceRecord& record, std::uint8_t command,
                ReadAfter after = ReadAfter::kAnyWrite) {
    packet = {};
    packet[kCommandByte] = command;
    packet.back() = 0xEE;
    return library->Exchange(record, packet, after) == 8;
  }

  std::vector<DeviceRecord> table = std::vector<DeviceRecord>(400);
  DeviceRecord& first = table[1];
  DeviceRecord& second = table[2];
  HidPacket packet{};
  std::unique_ptr<HidLibrary> library;
};

TEST(HostedLibrary, KeepsRecordsEqualOnBothSidesAndWhereTheyAre) {
  TwoBoards boards;
  EXPECT_EQ(boards.first.product_id, 0x0910);
  EXPECT_EQ(boards.second.library_b[262], 0x31);
  EXPECT_EQ(boards.table[3].product_id, 0) << "nothing else was written";
  boards.second.queried_version = 0x22;
  EXPECT_TRUE(boards.Exchange(boards.first, kNothing));
  EXPECT_TRUE(boards.Exchange(boards.first, kNothing, ReadAfter::kGoodWrite));
  EXPECT_EQ(boards.first.library_a[0], 2);
  // What the library did to the second record meanwhile must not be undone by the program's copy.
  EXPECT_EQ(boards.library->WriteData(boards.second, boards.packet), 6);
  EXPECT_EQ(boards.library->ReadData(boards.second, boards.packet), 8);
  EXPECT_THAT(std::span(boards.packet).first(3), ::testing::ElementsAre(1, 3, 0x22));
  EXPECT_EQ(boards.packet.back(), 0xEE);
  EXPECT_TRUE(boards.Exchange(boards.first, kBefool)) << "a read after any write";
  EXPECT_FALSE(boards.Exchange(boards.first, kBefool, ReadAfter::kGoodWrite));
  DeviceRecord elsewhere = boards.first;
  EXPECT_FALSE(boards.Exchange(elsewhere, kNothing)) << "not the record but a copy of it";
  EXPECT_EQ(elsewhere.library_a[1], 0xBB) << "the library has seen it, though";
  EXPECT_EQ(boards.library->DescribeProblem(&boards.second),
            (Problem{KVUSB_PROBLEM_IN_USE, "Board 1."}));
  EXPECT_EQ(boards.library->DescribeProblem(nullptr).kind, KVUSB_PROBLEM_NONE);
  EXPECT_EQ(boards.library->CloseDevices(std::span(boards.table).subspan(1, 2)), 9);
  EXPECT_EQ(boards.library->CloseDevices({}), 9);
}

TEST(HostedLibrary, TurnsTheEndOfItsProcessIntoAFailureAndStartsAnotherAtTheNextDetection) {
  const std::pair<std::uint8_t, const char*> ways[]{
      {kCrash, " crashed in ReadData."},
      {kExit, " ended its process in ReadData."},
      {kHang, " did not come back from ReadData and was stopped."}};
  for (const auto& [command, what] : ways) {
    SCOPED_TRACE(what);
    int ended = 0;
    HostedOptions options = Options([&] { ++ended; });
    if (command == kHang) options.answer_limit = options.patience = 50ms;
    TwoBoards boards(options);
    boards.packet[kCommandByte] = command;
    EXPECT_EQ(boards.library->WriteData(boards.first, boards.packet), 6);
    EXPECT_EQ(boards.library->ReadData(boards.first, boards.packet), KVUSB_READ_FAILED);
    EXPECT_EQ(boards.packet[kCommandByte], command) << "the buffer is as it was";
    EXPECT_EQ(boards.library->DescribeProblem(nullptr),
              (Problem{KVUSB_PROBLEM_OTHER, std::string("The HID library ") + TROUBLE_LIBRARY +
                                                what + " \"Refresh\" starts it again."}));
    EXPECT_FALSE(boards.Exchange(boards.second, kNothing));
    EXPECT_FALSE(boards.Detect()) << "other boards of the same table would be of another process";
    EXPECT_EQ(ended, 1);
    EXPECT_NE(boards.library->CloseDevices(std::span(boards.table).subspan(1, 2)), 0);

    std::uint32_t count = 0;
    EXPECT_EQ(boards.library->DetectHID(count, boards.table, KVUSB_TYPE_LOADER), 0);
    EXPECT_EQ(boards.library->WriteData(boards.first, boards.packet), KVUSB_WRITE_FAILED);
    EXPECT_EQ(boards.first.library_a[1], 0) << "the new process has not seen the old record";
    EXPECT_TRUE(boards.Detect());
    EXPECT_TRUE(boards.Exchange(boards.first, kNothing));
    EXPECT_EQ(boards.library->DescribeProblem(nullptr).kind, KVUSB_PROBLEM_NONE);
    EXPECT_EQ(ended, 1);
  }
}

TEST(HostedLibrary, GivesAnEraseItsTime) {
  HostedOptions options = Options();
  options.patience = options.answer_limit = 20ms;
  options.erase_limit = 400ms;
  TwoBoards boards(options);
  HidPacket erase{0, 0, 0, 0, 8}, hang{0, 0, 0, 0, kHang};
  boards.library->WriteData(boards.first, erase);
  boards.library->WriteData(boards.second, hang);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(boards.library->ReadData(boards.first, hang), KVUSB_READ_FAILED);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, 400ms);
}

// The events that have come, for whoever waits for them.
struct Events {
  static void KVUSB_CALL Note(std::uint32_t event, std::uint32_t type, const char* path,
                              void* self) {
    auto& events = *static_cast<Events*>(self);
    const std::scoped_lock lock(events.mutex);
    events.heard.push_back(std::to_string(event) + " " + std::to_string(type) + " " + path);
    events.came.notify_all();
  }
  bool Await(std::size_t count) {
    std::unique_lock lock(mutex);
    return came.wait_for(lock, 10s, [&] { return heard.size() >= count; });
  }
  std::mutex mutex;
  std::condition_variable came;
  std::vector<std::string> heard;
};

TEST(HostedLibrary, HandsEventsOnThroughEveryHostUntilTheHandlerIsTakenBack) {
  TwoBoards boards;
  Events events;
  EXPECT_TRUE(boards.library->SetDeviceChangeHandler(&Events::Note, &events));
  for (int i = 1; i <= 200; ++i) {
    boards.Exchange(boards.first, kTell);
    ASSERT_EQ(events.heard.size(), i) << "before the call returns";
  }
  boards.Exchange(boards.first, kTellLater);
  EXPECT_TRUE(events.Await(201));
  EXPECT_EQ(events.heard[0], "32772 5 in a call");
  EXPECT_EQ(events.heard[200], "32772 5 idle");

  boards.Exchange(boards.first, kCrash);
  boards.library->CloseDevices({});
  boards.Detect();
  boards.Exchange(boards.first, kTell);
  EXPECT_EQ(events.heard.size(), 202U);
  EXPECT_TRUE(boards.library->SetDeviceChangeHandler(nullptr, nullptr));
  boards.Exchange(boards.first, kTell);
  EXPECT_EQ(events.heard.size(), 202U);

  HostedOptions options = Options();
  options.library = EVENTLESS_LIBRARY;
  EXPECT_FALSE(TwoBoards(options).library->SetDeviceChangeHandler(nullptr, nullptr));
}

TEST(HostedLibrary, SaysWhyItCannotStart) {
  HostedOptions options = Options();
  const fs::path folder = quillon::testing::OwnFolders::Root();
  options.library = folder / "text.dll";
  std::ofstream(options.library) << "no library\n";
  EXPECT_THAT(
      ProblemOf(HostedLibrary::Start(options)),
      ::testing::StartsWith("The HID library " + options.library.string() + " cannot be loaded: "));
  options.program = folder / "none";
  EXPECT_THAT(ProblemOf(HostedLibrary::Start(options)),
              ::testing::HasSubstr((folder / "none").string() + " cannot be started: "));
#ifndef _WIN32
  setenv("QUILLON_KVUSB_HOST", "1", 1);
  EXPECT_EQ(ProblemOf(OpenLibraryFile("/x.so", {.program_folder = folder})),
            "The HID library /x.so is to run in a process of its own. For that the program " +
                (folder / "kvusb-host").string() + " is needed, which does not exist.");
  setenv("QUILLON_KVUSB_HOST", "0", 1);
  EXPECT_EQ(ProblemOf(OpenLibraryFile("/x.so", {.program_folder = folder})),
            "The HID library /x.so does not exist.");

  options.program = folder / "host";
  const std::pair<const char*, const char*> hosts[]{
      {"exit 0", "ended its process at its start."},
      {"printf '%36s' | tr ' ' x >&$1; exec sleep 9", "ended its process at its start."},
      {"printf '%36s' | tr ' ' '\\0' >&$1; exec sleep 9", "is of another version than this one."},
      {"exec sleep 9", "did not load in time."}};
  for (const auto& [script, problem] : hosts) {
    options.start_limit = std::string_view(script).starts_with("exec") ? 50ms : 9s;
    std::ofstream(options.program) << "#!/bin/bash\n" << script << "\n";
    fs::permissions(options.program, fs::perms::owner_all);
    EXPECT_THAT(ProblemOf(HostedLibrary::Start(options)), ::testing::EndsWith(problem)) << script;
  }
#else
  std::ofstream(options.library, std::ios::binary)
      << "MZ" << std::string(58, ' ') << std::string("\x40\0\0\0PE\0\0\x4C\x01", 10);
  EXPECT_THAT(ProblemOf(OpenLibraryFile(options.library, {.program_folder = folder})),
              ::testing::HasSubstr(" is made for 32-bit programs. For that the program "));
#endif
}

#ifndef _WIN32
TEST(HostedLibrary, IsQuietAboutAnEndThatIsNoticedAtItsOwn) {
  int ended = 0;
  {
    const TwoBoards boards(Options([&] { ++ended; }));
    std::ifstream children("/proc/thread-self/children");
    pid_t host = 0;
    ASSERT_TRUE(children >> host);
    kill(host, SIGKILL);
  }
  EXPECT_EQ(ended, 0);
}

// What the library says into a pipe that only the host holds, after the program.
TEST(HostedLibrary, LetsItsLibraryTakeLeaveAndNeverOutlivesTheProgram) {
  for (const std::uint8_t command : {kNothing, kHang}) {
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    setenv("TROUBLE_FD", std::to_string(ends[1]).c_str(), 1);
    const pid_t program = fork();
    if (program == 0) {
      HostedOptions options = Options();
      options.prompt_limit = options.patience = 60s;
      TwoBoards boards(options);
      boards.Exchange(boards.first, command);
      boards.library.reset();
      _exit(0);
    }
    close(ends[1]);
    std::string said;
    char letter = 0;
    while (read(ends[0], &letter, 1) == 1) {
      said += letter;
      if (letter == 'h') kill(program, SIGKILL);
    }
    EXPECT_EQ(said, command == kHang ? "h" : "d");
    waitpid(program, nullptr, 0);
    close(ends[0]);
  }
}
#endif

TEST(PeFile, TellsTheMachineOfAWholeHeaderAndNothingOfACutOne) {
  std::string file(0x80, '\0');
  file.replace(0, 2, "MZ");
  file[60] = 0x78;
  file.replace(0x78, 4, std::string_view("PE\0\0", 4));
  const auto with = [&](std::uint8_t low, std::uint8_t high) {
    std::string out = file;
    out[0x7C] = static_cast<char>(low);
    out[0x7D] = static_cast<char>(high);
    return out;
  };
  EXPECT_EQ(PeMachineOf(with(0x4C, 0x01)), PeMachine::kX86);
  EXPECT_EQ(PeMachineOf(with(0x64, 0x86)), PeMachine::kX64);
  EXPECT_EQ(PeMachineOf(with(0x64, 0xAA)), PeMachine::kOther);
  const std::string whole = with(0x4C, 0x01);
  for (std::size_t length = 0; length < 0x7E; ++length)
    EXPECT_EQ(PeMachineOf(whole.substr(0, length)), PeMachine::kNone) << length;
  EXPECT_EQ(PeMachineOf(whole.substr(0, 0x7E)), PeMachine::kX86);
  for (const auto& [at, value] : {std::pair{0, 'N'}, {60, '\x79'}, {63, '\xFF'}, {0x79, 'e'}}) {
    std::string spoilt = whole;
    spoilt[static_cast<std::size_t>(at)] = value;
    EXPECT_EQ(PeMachineOf(spoilt), PeMachine::kNone) << at;
  }
}

}  // namespace
}  // namespace quillon::host
