// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "kvusb/hid/OverlappedHid.h"
#include "kvusb/hid/WindowsHid.h"

namespace quillon::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using Bytes = std::vector<std::uint8_t>;
using Clock = HidHandle::Clock;

constexpr std::chrono::hours kForEver(1);

// A pipe in the place of a board's file: the board is its other end.
class Pipe {
 public:
  explicit Pipe(std::size_t output_bytes = KVUSB_PACKET_BYTES,
                Clock::duration write_limit = kForEver, DWORD room = 4096)
      : board_(CreateNamedPipeW(Name().c_str(), PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 1, room, room,
                                0, nullptr)),
        file_(CreateFileW(Name().c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                          FILE_FLAG_OVERLAPPED, nullptr)),
        hid_(FileHandle(file_), KVUSB_PACKET_BYTES, output_bytes, write_limit) {
    ConnectNamedPipe(board_.get(), nullptr);
  }

  void Say(std::uint8_t report_number, std::uint8_t echo) {
    Bytes said(KVUSB_PACKET_BYTES, 0x5A);
    said[0] = report_number;
    said[1] = echo;
    DWORD written = 0;
    ASSERT_NE(WriteFile(board_.get(), said.data(), KVUSB_PACKET_BYTES, &written, nullptr), 0);
  }
  // What is on its way is lost.
  void Leave() { DisconnectNamedPipe(board_.get()); }
  Bytes Hear() {
    Bytes heard(256);
    DWORD bytes = 0;
    ReadFile(board_.get(), heard.data(), 256, &bytes, nullptr);
    heard.resize(bytes);
    return heard;
  }

  bool Write(std::uint8_t command) {
    std::array<std::uint8_t, KVUSB_PACKET_BYTES> packet{};
    packet[4] = command;
    return hid_.Write(packet);
  }
  int Read(Clock::duration limit) { return hid_.Read(report, Clock::now() + limit); }
  bool IsClosed() const {
    DWORD flags = 0;
    return GetHandleInformation(file_, &flags) == 0;
  }

  std::array<std::uint8_t, 64> report{};

 private:
  static std::wstring Name() {
    return LR"(\\.\pipe\quillon-hid-test-)" + std::to_wstring(GetCurrentProcessId());
  }

  FileHandle board_;
  HANDLE file_;  // hid_'s
  OverlappedHid hid_;
};

TEST(OverlappedHid, NothingThatABoardSaysIsLostBetweenTwoReads) {
  Pipe pipe;
  EXPECT_EQ(pipe.Read({}), 0);
  pipe.Say(0, 0x13);
  pipe.Say(0, 0x14);
  pipe.Say(7, 0x15);
  EXPECT_EQ(pipe.Read(kForEver), 64);
  EXPECT_EQ(pipe.report[0], 0x13);
  EXPECT_EQ(pipe.report[63], 0x5A) << "all of an answer";
  EXPECT_EQ(pipe.Read(kForEver), 64);
  EXPECT_EQ(pipe.report[0], 0x14);
  EXPECT_EQ(pipe.Read(kForEver), 64) << "cut, as a report number takes a place";
  EXPECT_EQ(pipe.report[0], 7);
  EXPECT_EQ(pipe.report[1], 0x15);
  EXPECT_EQ(pipe.Read({}), 0);
}

TEST(OverlappedHid, ABoardThatAnsweredAndLeftIsHeardAndClosed) {
  Pipe pipe;
  EXPECT_EQ(pipe.Read({}), 0);
  pipe.Say(0, 0xFF);
  pipe.Leave();
  EXPECT_EQ(pipe.Read(kForEver), 64);
  EXPECT_EQ(pipe.report[0], 0xFF);
  EXPECT_FALSE(pipe.IsClosed());
  EXPECT_EQ(pipe.Read(kForEver), -1);
  EXPECT_TRUE(pipe.IsClosed());
  EXPECT_FALSE(pipe.Write(1));
  EXPECT_EQ(pipe.Read(kForEver), -1);
}

TEST(OverlappedHid, AWriteFindsThatTheBoardHasLeft) {
  Pipe pipe;
  EXPECT_EQ(pipe.Read({}), 0);
  pipe.Leave();
  EXPECT_FALSE(pipe.Write(1));
  EXPECT_TRUE(pipe.IsClosed());
}

TEST(OverlappedHid, AReportHasTheLengthThatTheBoardWants) {
  Pipe longer(70);
  EXPECT_TRUE(longer.Write(0x11));
  Bytes expected(70);
  expected[4] = 0x11;
  EXPECT_EQ(longer.Hear(), expected);
}

TEST(OverlappedHid, AShortReportIsCut) {
  Pipe shorter(6);
  EXPECT_TRUE(shorter.Write(0x11));
  EXPECT_THAT(shorter.Hear(), ElementsAre(0, 0, 0, 0, 0x11, 0));
}

TEST(OverlappedHid, ABoardThatTakesNoReportDoesNotHoldTheProgram) {
  Pipe pipe(KVUSB_PACKET_BYTES, std::chrono::milliseconds(20), 1);
  EXPECT_FALSE(pipe.Write(0x11));
}

// Files in the place of boards: what Windows says about opening them is the same.
TEST(WindowsHid, SaysWhyABoardCannotBeOpened) {
  const std::filesystem::path folder = std::filesystem::path(::testing::TempDir());
  const std::filesystem::path held = folder / "quillon-hid-test-held";
  const FileHandle holder(CreateFileW(held.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_FLAG_DELETE_ON_CLOSE, nullptr));
  const struct {
    std::filesystem::path device;
    std::int32_t kind;
    const char* words;
  } cases[]{{held, KVUSB_PROBLEM_IN_USE, "Another program holds the board."},
            {folder, KVUSB_PROBLEM_PERMISSION, "Windows does not let you open the board ("},
            {folder / "nowhere", KVUSB_PROBLEM_OTHER, "The board is not there any more."},
            {folder / "nowhere" / "board", KVUSB_PROBLEM_OTHER, "The board is not there any more."},
            {folder / "no|name", KVUSB_PROBLEM_OTHER, "The board cannot be opened: "}};
  WindowsHid hid;
  for (const auto& c : cases) {
    const std::string device = c.device.string();
    const OpenedHid opened = hid.Open(device);
    EXPECT_EQ(opened.handle, nullptr);
    EXPECT_EQ(opened.error, hid.MayOpen(device)) << device;
    const Problem problem = hid.Explain(device, opened.error);
    EXPECT_EQ(problem.kind, c.kind) << device << opened.error;
    EXPECT_THAT(problem.sentence, HasSubstr(c.words));
  }
  EXPECT_EQ(hid.Explain("", 0), Problem());
}

TEST(WindowsHid, ListsWithoutAProblem) { EXPECT_EQ(WindowsHid().List().problem, Problem()); }

}  // namespace
}  // namespace quillon::testing
