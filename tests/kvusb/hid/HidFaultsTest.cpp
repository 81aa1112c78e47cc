// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <thread>

#include "kvusb/hid/HidFixture.h"

namespace quillon::testing {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const Bytes kReadPorts = {0, 0, 0, 0, 0x17};

// Long enough for an answer that is there, and short where none will come.
const HidOptions kImpatient{.answer_limit = milliseconds(20), .erase_limit = milliseconds(60)};

std::string BoardWith(const std::string& fault) {
  return "{\"id\": \"a\", " + kJoystick + ", \"faults\": [" + fault + "]}";
}

TEST(HidFaults, AnEraseMayTakeLonger) {
  const auto seconds = [](const Bytes& request) {
    HidFixture fixture(BoardWith(R"({"kind": "stall", "times": 0})"),
                       {.answer_limit = milliseconds(1), .erase_limit = milliseconds(40)});
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THAT(fixture.Ask(request), IsEmpty());
    EXPECT_EQ(fixture.read, KVUSB_READ_TIMEOUT);
    return std::chrono::steady_clock::now() - begin;
  };
  EXPECT_GE(seconds({0, 0, 0, 0, 8}), milliseconds(40));
  EXPECT_GE(seconds({0, 0, 0, 0, 0x1C, 0, 8}), milliseconds(40));
  // How much sooner others end is the machine's business, so only a limit that was not given.
  HidFixture fixture(BoardWith(R"({"kind": "stall", "times": 0})"),
                     {.answer_limit = milliseconds(1), .erase_limit = std::chrono::hours(1)});
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x1C, 0, 9}), IsEmpty());
  EXPECT_EQ(fixture.read, KVUSB_READ_TIMEOUT);
}

TEST(HidFaults, NoLateAnswerIsTakenForTheNextQuestion) {
  const Bytes kReadOther = {0, 0, 0, 0, 0x15};
  const Bytes kEraseNode = {0, 0, 0, 0, 0x1C, 0, 8};  // answered with the function
  const struct {
    std::vector<Bytes> given_up;
    std::vector<std::uint8_t> late;
  } cases[]{{{kReadHat}, {0x13}},
            {{kReadHat, kReadOther}, {0x13, 0x15}},
            {{kReadHat, kReadHat}, {0x13, 0x13}},
            {{kReadHat, kReadOther}, {0x15}},
            {{kReadHat, kReadOther}, {}},
            {{kEraseNode, kReadHat}, {8, 0x13}}};
  for (const auto& c : cases) {
    HidFixture fixture(BoardWith(R"({"kind": "stall", "times": 0})"), kImpatient);
    for (const Bytes& request : c.given_up) EXPECT_THAT(fixture.Ask(request), IsEmpty());
    ASSERT_EQ(fixture.Write(kReadAnalog), KVUSB_OK);
    for (const std::uint8_t echo : c.late) fixture.kernel.SendReport(0, Bytes(64, echo));
    fixture.kernel.SendReport(0, Bytes(64, 0x11));
    EXPECT_EQ(fixture.Read(), KVUSB_OK);
    EXPECT_EQ(fixture.packet[0], 0x11);
    // Those that have not come by then never will.
    ASSERT_EQ(fixture.Write(kReadAnalog), KVUSB_OK);
    fixture.kernel.SendReport(0, Bytes(64, 0x13));
    EXPECT_EQ(fixture.Read(), KVUSB_OK);
    EXPECT_EQ(fixture.packet[0], 0x13) << "a wrong echo is the program's to judge";
  }
}

TEST(HidFaults, ARequestThatWasNotSentHasNoAnswer) {
  HidFixture fixture(BoardWith(R"({"kind": "stall", "command": "0x13"},
                              {"kind": "write_fails", "command": "0x11"})"),
                     kImpatient);
  EXPECT_THAT(fixture.Ask(kReadHat), IsEmpty());
  ASSERT_EQ(fixture.Write(kReadAnalog), KVUSB_WRITE_FAILED);
  fixture.kernel.SendReport(0, Bytes(64, 0x13));
  EXPECT_EQ(fixture.Read(), KVUSB_READ_FAILED) << "an answer to the request before it";
  EXPECT_EQ(fixture.packet[4], 0x11);
  EXPECT_THAT(fixture.Ask(kReadAnalog), ElementsAre(0x11));
}

TEST(HidFaults, ReportsThatPiledUpAreDropped) {
  HidFixture fixture(kOneBoard, kImpatient);
  for (int i = 0; i < 60; ++i) fixture.kernel.SendReport(0, Bytes(64, 0x77));
  EXPECT_THAT(fixture.Ask(kReadHat), ElementsAre(0x13));
}

TEST(HidFaults, ShortAndWrongAnswersAreHandedOnAsTheyCome) {
  HidFixture fixture(BoardWith(R"({"kind": "short_answer", "command": "0x11", "value": 2},
                              {"kind": "wrong_echo", "command": "0x13", "value": 20})"));
  EXPECT_THAT(fixture.Ask(kReadAnalog, 5), ElementsAre(0x11, 0x59, 0, 0, 0x11));
  EXPECT_THAT(fixture.Ask(kReadHat), ElementsAre(20));
}

TEST(HidFaults, ABoardPulledAtAnyMomentFailsAndTheOthersGoOn) {
  const std::string two = BoardWith(R"({"kind": "vanish", "command": "0x13"})") +
                          R"(, {"id": "b", "product": "0x0510", "firmware": "2.30"})";
  {
    HidFixture fixture(two);
    EXPECT_THAT(fixture.Ask(kReadHat), IsEmpty());
    EXPECT_EQ(fixture.wrote, KVUSB_OK);
    EXPECT_EQ(fixture.read, KVUSB_READ_FAILED) << "between write and read";
    fixture.kernel.FinishRestarts();
    EXPECT_THAT(fixture.Ask(kReadPorts, 1, 1), ElementsAre(0x17));
    EXPECT_NE(fixture.Close(), 0);
    EXPECT_EQ(fixture.Detect(), 1U);
  }
  {
    HidFixture fixture(two);
    fixture.kernel.Unplug(0);
    EXPECT_THAT(fixture.Ask(kReadAnalog), IsEmpty());
    EXPECT_EQ(fixture.wrote, KVUSB_WRITE_FAILED) << "before the write";
    fixture.kernel.Plug(0);
    EXPECT_THAT(fixture.Ask(kReadAnalog), IsEmpty()) << "a board that came back has a new record";
    EXPECT_EQ(fixture.Detect(), 2U);
    EXPECT_THAT(fixture.Ask(kReadAnalog, 1, 1), ElementsAre(0x11)) << "the newest is the last";
  }
  {
    // Listed by the kernel, gone when it is opened.
    EmulatedKernel* kernel = nullptr;
    const auto pull = [&] {
      if (kernel != nullptr) std::exchange(kernel, nullptr)->Unplug(0);
      return 0;
    };
    HidFixture fixture(two, {}, std::make_unique<KeptDoor>(pull));
    kernel = &fixture.kernel;
    EXPECT_THAT(fixture.Ask(kReadHat), IsEmpty());
    EXPECT_EQ(fixture.wrote, KVUSB_WRITE_FAILED);
    EXPECT_THAT(fixture.Ask(kReadPorts, 1, 1), ElementsAre(0x17));
  }
}

TEST(HidFaults, ABoardPulledWhileItsAnswerIsAwaitedEndsTheWait) {
  HidFixture fixture(BoardWith(R"({"kind": "stall"})"), {.answer_limit = std::chrono::hours(1)});
  EXPECT_EQ(fixture.Write({}), KVUSB_OK);
  std::thread hand([&] { fixture.kernel.Unplug(0); });
  EXPECT_EQ(fixture.Read(), KVUSB_READ_FAILED);
  hand.join();
}

TEST(HidFaults, ASignalDoesNotEndAWait) {
  HidFixture fixture(BoardWith(R"({"kind": "stall"})"), {.answer_limit = std::chrono::hours(1)});
  struct sigaction action {};
  action.sa_handler = [](int) {};
  sigaction(SIGUSR1, &action, nullptr);
  EXPECT_EQ(fixture.Write({}), KVUSB_OK);
  std::atomic<bool> done = false;
  const pthread_t reader = pthread_self();
  std::thread disturber([&] {
    for (int i = 0; i < 100; ++i) {
      pthread_kill(reader, SIGUSR1);
      std::this_thread::yield();
    }
    fixture.kernel.SendReport(0, Bytes(64, 0x31));
    while (!done) {
      pthread_kill(reader, SIGUSR1);
      std::this_thread::yield();
    }
  });
  EXPECT_EQ(fixture.Read(), KVUSB_OK);
  done = true;
  disturber.join();
  EXPECT_EQ(fixture.packet[0], 0x31);
}

TEST(HidFaults, OddTextsAndTwinSerials) {
  HidFixture fixture(R"({"id": "a", "product": "0x0910", "firmware": "2.82", "serial_hex": "31...",
                     "name_hex": "41 ED A0 80 C3...", "manufacturer_hex": ""},
                    {"id": "b", "product": "0x0910", "firmware": "2.82", "serial_hex": "32"},
                    {"id": "c", "product": "0x0910", "firmware": "2.82", "serial_hex": "32"})");
  ASSERT_EQ(fixture.count, 3U);
  EXPECT_STREQ(fixture.table[0].serial_number, std::string(19, '1').c_str()) << "cut, with an end";
  EXPECT_EQ(std::string(fixture.table[0].product_text).substr(0, 4), "A\xED\xA0\x80");
  EXPECT_STREQ(fixture.table[0].manufacturer, "");
  EXPECT_STREQ(fixture.table[1].serial_number, fixture.table[2].serial_number);
  fixture.kernel.Board(1).Provoke({.kind = sim::FaultKind::kStatus, .value = 0x41});
  EXPECT_THAT(fixture.Ask(kReadHat, 1, 1), ElementsAre(0x41)) << "told apart all the same";
  EXPECT_THAT(fixture.Ask(kReadHat, 1, 2), ElementsAre(0x13));
}

TEST(HidFaults, ABoardThatMayNotBeOpenedIsListedAndSaysWhy) {
  const struct {
    int error;
    std::int32_t kind;
    const char* words;
  } cases[]{{EACCES, KVUSB_PROBLEM_PERMISSION, "does not let you open /dev/hidraw1"},
            {EPERM, KVUSB_PROBLEM_OTHER, "cannot be opened"},  // by a container, say: no rule helps
            {EBUSY, KVUSB_PROBLEM_IN_USE, "Another program holds /dev/hidraw1."},
            {ENODEV, KVUSB_PROBLEM_OTHER, "not there any more"},
            {EMFILE, KVUSB_PROBLEM_OTHER, "cannot be opened"}};
  for (const auto& c : cases) {
    int error = c.error;
    HidFixture fixture(kOneBoard, {}, std::make_unique<KeptDoor>([&] { return error; }));
    ASSERT_EQ(fixture.count, 1U);
    const auto problem = [&] { return fixture.hid.DescribeProblem(fixture.table.data()); };
    EXPECT_EQ(problem().kind, c.kind);
    EXPECT_THAT(problem().sentence, HasSubstr(c.words)) << "before anybody tried";
    EXPECT_THAT(fixture.Ask(kReadHat), IsEmpty());
    EXPECT_EQ(problem().kind, c.kind);
    EXPECT_THAT(problem().sentence, HasSubstr(c.words)) << "and after";
    error = 0;
    EXPECT_THAT(fixture.Ask(kReadHat), ElementsAre(0x13)) << "as soon as it may be";
    EXPECT_EQ(problem(), Problem());
  }
}

TEST(HidFaults, RefusesWhatTheSystemRefuses) {
  HidFixture fixture(kOneBoard);
  fixture.Close();
  constexpr uid_t kNobody = 65534;
  const uid_t user = geteuid();
  if (user != 0) GTEST_SKIP() << "only root can become somebody else";
  fixture.kernel.LetOthersOpen(false);
  ASSERT_EQ(setresuid(kNobody, kNobody, user), 0);
  EXPECT_EQ(fixture.Detect(), 1U);
  const Problem problem = fixture.hid.DescribeProblem(fixture.table.data());
  EXPECT_EQ(problem.kind, KVUSB_PROBLEM_PERMISSION);
  EXPECT_THAT(problem.sentence, HasSubstr("Permission denied"));
  EXPECT_THAT(fixture.Ask(kReadHat), IsEmpty());
  ASSERT_EQ(setresuid(user, user, user), 0);
}

TEST(HidFaults, AMachineWithoutHidrawSaysSo) {
  HidBoards hid({}, std::make_unique<LinuxHid>("/nowhere"));
  std::vector<DeviceRecord> table(4);
  std::uint32_t count = 0;
  EXPECT_EQ(hid.DetectHID(count, table, 2), 0);
  const Problem problem = hid.DescribeProblem(nullptr);
  EXPECT_EQ(problem.kind, KVUSB_PROBLEM_OTHER);
  EXPECT_THAT(problem.sentence, HasSubstr("/nowhere/class/hidraw"));
}

}  // namespace
}  // namespace quillon::testing
