// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <functional>
#include <sstream>
#include <streambuf>
#include <vector>

#include "conformance/ConformanceMain.h"
#include "conformance/Process.h"
#include "devlink/SharedObject.h"
#include "kvusb/HidPacket.h"
#include "testing/Environment.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::Not;

struct Ran {
  int status;
  std::string out, err;
};

Ran Examine(const std::vector<std::string>& arguments, std::streambuf* person = nullptr) {
  std::istringstream nobody;
  std::istream in(person == nullptr ? nobody.rdbuf() : person);
  std::ostringstream out, err;
  const int status = ConformanceMain(arguments, "/nowhere", {in, out, err, [](auto) {}});
  return {status, out.str(), err.str()};
}

std::string Fixture(const std::string& broken) {
  return (fs::path(FIXTURES) / ("breaks-" + broken + MODULE_SUFFIX)).string();
}

// What a system does not tell cannot be tried.
std::string NothingFailed(int ok, int not_tried) {
  const int untold = conformance::OpenDescriptors() < 0 ? 1 : 0;
  return "Nothing failed: " + std::to_string(ok - untold) + " ok, 0 failed, " +
         std::to_string(not_tried + untold) + " not tried.\n";
}

// The names of the checks that failed.
std::vector<std::string> FailedChecks(const std::string& page) {
  std::vector<std::string> names;
  std::istringstream lines(page);
  for (std::string line; std::getline(lines, line);) {
    if (!line.ends_with(" FAILED")) continue;
    line.erase(line.find_last_not_of(' ', line.size() - sizeof "FAILED") + 1);
    names.push_back(line);
  }
  return names;
}

// Does something to the boards at the moment at which the program waits for its user.
class Person : public std::streambuf {
 public:
  explicit Person(std::function<void()> act) : act_(std::move(act)) {}

 protected:
  int_type underflow() override {
    if (line_.empty()) act_();
    line_ = "\n";
    setg(line_.data(), line_.data(), line_.data() + 1);
    return traits_type::to_int_type('\n');
  }

 private:
  std::function<void()> act_;
  std::string line_;
};

class OverSimulatedBoards : public ::testing::Test {
 protected:
  OverSimulatedBoards() {
    testing::SetVariable("QUILLON_SIM_RIG", RIG_FILE);
    testing::SetVariable("QUILLON_SIM_LATENCY_US", "0");
  }
};

TEST_F(OverSimulatedBoards, EveryPromiseIsKept) {
  const Ran ran = Examine({"--restart", "--vanish", "1010:22", KVUSB_SIM_FILE});
  EXPECT_EQ(ran.status, kPromisesKept) << ran.out << ran.err;
  EXPECT_THAT(FailedChecks(ran.out), ::testing::IsEmpty());
  EXPECT_THAT(ran.out, HasSubstr("1010 version 0120 firmware  Compact Joystick"));
  EXPECT_THAT(ran.out, HasSubstr("the serial number has no zero byte"));
  // Seven restarts besides the vanishing board's, which are a removal and an arrival each, and one
  // removal for good.
  EXPECT_THAT(ran.out, HasSubstr("    17 events came.\n"));
  EXPECT_THAT(ran.out, HasSubstr(NothingFailed(25, 1)));
}

TEST_F(OverSimulatedBoards, ABoardThatAPersonPullsIsMissed) {
  Person pulls([] {
    const SharedObject same(KVUSB_SIM_FILE);
    std::vector<DeviceRecord> table(64);
    std::uint32_t count = 0;
    ASSERT_NE(same.Find<DetectHIDFunction>("DetectHID")(&count, table.data(), 2), 0);
    HidPacket packet{0, 0, 0, 0, 0x22};
    for (std::uint32_t i = 0; i < count; ++i)
      if (table[i].product_id == 0x1010)
        same.Find<WriteDataFunction>("WriteData")(&table[i], packet.data());
  });
  const Ran ran = Examine({"--unplug", KVUSB_SIM_FILE}, &pulls);
  EXPECT_EQ(ran.status, kPromisesKept) << ran.out;
  EXPECT_THAT(ran.out, HasSubstr("Pull one board, then press Enter. ok\n"));

  Person forgets([] {});
  const Ran other = Examine({"--unplug", KVUSB_SIM_FILE}, &forgets);
  EXPECT_EQ(other.status, kPromisesBroken);
  EXPECT_THAT(other.out, HasSubstr("A detection finds all boards that were there before."));
}

TEST(Conformance, TheSoundFixtureIsSound) {
  const Ran ran = Examine({"--restart", "--vanish", "1500:22", Fixture("NOTHING")});
  EXPECT_EQ(ran.status, kPromisesKept) << ran.out << ran.err;
  EXPECT_THAT(ran.out, HasSubstr(NothingFailed(26, 0)));
}

struct Broken {
  std::string promise, check;
};

void PrintTo(const Broken& broken, std::ostream* out) { *out << broken.promise; }

class ABrokenPromise : public ::testing::TestWithParam<Broken> {};

// Each fault is found by the check for it and by no other, so that the page tells what is wrong.
TEST_P(ABrokenPromise, FailsItsOwnCheck) {
  const auto& [promise, check] = GetParam();
  if (promise == std::string("DESCRIPTORS") && conformance::OpenDescriptors() < 0)
    GTEST_SKIP() << "this system does not tell what is open";
  const Ran ran = Examine({"--restart", "--vanish", "1500:22", Fixture(promise)});
  EXPECT_EQ(ran.status, kPromisesBroken);
  EXPECT_THAT(FailedChecks(ran.out), ::testing::ElementsAre(check)) << ran.out;
}

INSTANTIATE_TEST_SUITE_P(
    Conformance, ABrokenPromise,
    ::testing::Values(
        Broken{"COUNT", "detection: counts"},
        Broken{"GUARD", "detection: nothing behind the records"},
        Broken{"PROGRAM_BYTES", "detection: the program's bytes"},
        Broken{"PRODUCT", "records: filled in"}, Broken{"VERSION", "records: filled in"},
        Broken{"EQUALITY", "records: all different"}, Broken{"ECHO", "exchange: echo"},
        Broken{"LAST_BYTE", "exchange: byte 64 of the buffer"},
        Broken{"REQUEST", "exchange: requests are not changed"},
        Broken{"REPETITION", "exchange: same question, same answer"},
        Broken{"ORDER", "exchange: 200 in a row"}, Broken{"UNREAD", "exchange: unread answers"},
        Broken{"TURNS", "exchange: boards in turn"}, Broken{"EMPTY_CLOSING", "closing: no boards"},
        Broken{"DEATH", "closing: closed records are dead"},
        Broken{"SECOND_CLOSING", "closing: twice"},
        Broken{"DESCRIPTORS", "closing: open descriptors after 50 times"},
        Broken{"TEXT", "problems: texts"}, Broken{"HOLD", "problems: boards out of reach"},
        Broken{"SILENCE", "misuse: reading without a request"},
        Broken{"SECOND_READ", "misuse: reading without a request"},
        Broken{"REFUSAL", "misuse: another report number"},
        Broken{"FAILED_READ", "misuse: reading without a request"},
        Broken{"GARBAGE", "misuse: records of garbage"},
        Broken{"RESTART", "leaving: every board restarts"},
        Broken{"LEAVING", "leaving: board 1500 vanishes"}, Broken{"EVENTS", "events: what came"},
        Broken{"NEWS", "events: what came"}, Broken{"RESTART_NEWS", "events: what came"},
        Broken{"THROWING", "exceptions: none leaves a function"}),
    [](const auto& test) { return test.param.promise; });

TEST(Conformance, ExplainsItsCommandLine) {
  EXPECT_THAT(Examine({"--help"}).out, HasSubstr("Usage: kvusb-conformance"));
  EXPECT_EQ(Examine({"--help"}).status, kPromisesKept);
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{}, "LIBRARY is required"},
      {{"--fast", "sim"}, "not expected: --fast"},
      {{"sim", "hid"}, "not expected: hid"},
      {{"sim", "--vanish"}, "--vanish: 1 required PID:COMMAND missing"},
      {{"--vanish", "1010", "sim"}, "--vanish: It needs"},
      {{"--vanish", "1010:1FF", "sim"}, "--vanish: It needs"},
      {{"--vanish", "10g0:22", "sim"}, "--vanish: It needs"},
      {{"sim"}, "kvusb-sim" MODULE_SUFFIX " does not exist"},
      {{RIG_FILE}, "cannot be loaded"},
  };
  for (const auto& [arguments, problem] : cases) {
    const Ran ran = Examine(arguments);
    EXPECT_EQ(ran.status, kNothingExamined) << problem;
    EXPECT_THAT(ran.err, HasSubstr(problem));
    EXPECT_THAT(ran.out, Not(HasSubstr("ok")));
  }
}

}  // namespace
}  // namespace quillon
