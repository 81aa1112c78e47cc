// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "lab/usbip/HostBytes.h"
#include "testing/OwnFolders.h"
#include "usbip/VirtualBoard.h"

namespace quillon::usbip {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;
using Time = VirtualBoard::Time;

constexpr Time kStart{std::chrono::hours(1)};
constexpr std::uint8_t kIdentity = 6, kSetSerial = 7, kErase = 8, kRestartOther = 0xFF;

// A board of the second kind has one interface, and so endpoint 1 in both modes.
sim::BoardSpec Spi(bool flash_mode = false) {
  sim::BoardSpec spec;
  spec.id = "spi";
  spec.product = 0x1500;
  spec.product_text = "Q";
  spec.firmware = 0x0110;
  spec.flash_mode = flash_mode;
  return spec;
}

sim::BoardSpec Joystick() {
  sim::BoardSpec spec = Spi();
  spec.product = 0x0910;
  return spec;
}

// 64 bytes as they travel: without the report number.
Wire Report(std::uint8_t command, std::uint8_t argument = 0, const Wire& payload = {}) {
  Wire report = Joined({1, 0, 0, command, argument}, payload);
  report.resize(64);
  return report;
}

Wire OutBytes(std::uint32_t number, const Wire& report, std::uint32_t endpoint = 1) {
  return SubmitBytes(number, false, endpoint, static_cast<std::uint32_t>(report.size()), {},
                     report);
}

Wire InBytes(std::uint32_t number, std::uint32_t endpoint = 1) {
  return SubmitBytes(number, true, endpoint, 64);
}

// An answer of the board: these bytes, then filler.
Wire Answered(std::uint32_t number, Wire front) {
  front.resize(64, 0x5A);
  return AnswerBytes(number, 0, 64, front);
}

// A board whose clock stands still until somebody moves it.
struct Fixture {
  VirtualBoard board;
  Time now = kStart;

  explicit Fixture(const sim::BoardSpec& spec) : board(spec) {}

  Wire Says(const Wire& bytes) {
    board.Receive(bytes, now);
    return board.TakeOutput();
  }
  Wire After(milliseconds time) {
    now += time;
    board.Advance(now);
    return board.TakeOutput();
  }
};

TEST(VirtualBoard, TellsAHostAllThatItAsksWhenItIsPluggedIn) {
  Fixture fixture(Spi());
  const auto get = [&](const SetupBytes& setup, std::uint32_t length) {
    return fixture.Says(SubmitBytes(1, true, 0, length, setup));
  };
  const Wire device = {18, 1, 0, 2, 0, 0, 0, 64, 0x7E, 0x4C, 0x00, 0x15, 0x10, 0x01, 1, 2, 3, 1};
  EXPECT_EQ(get({0x80, 6, 0, 1, 0, 0, 64, 0}, 64), AnswerBytes(1, 0, 18, device));
  EXPECT_EQ(get({0x80, 6, 0, 1, 0, 0, 8, 0}, 64), AnswerBytes(1, 0, 8, {18, 1, 0, 2, 0, 0, 0, 64}));
  EXPECT_EQ(get({0x80, 6, 0, 2, 0, 0, 9, 0}, 9),
            AnswerBytes(1, 0, 9, {9, 2, 41, 0, 1, 1, 0, 0x80, 50}));
  EXPECT_EQ(get({0x80, 6, 2, 3, 9, 4, 255, 0}, 255), AnswerBytes(1, 0, 4, {4, 3, 'Q', 0}));
  EXPECT_EQ(get({0x80, 8, 0, 0, 0, 0, 1, 0}, 1), AnswerBytes(1, 0, 1, {0}));
  EXPECT_EQ(fixture.Says(SubmitBytes(2, false, 0, 0, {0x00, 9, 1, 0, 0, 0, 0, 0})),
            AnswerBytes(2, 0, 0));
  EXPECT_EQ(get({0x80, 8, 0, 0, 0, 0, 1, 0}, 1), AnswerBytes(1, 0, 1, {1}));
  EXPECT_EQ(fixture.Says(SubmitBytes(3, false, 0, 0, {0x21, 10, 0, 0, 0, 0, 0, 0})),
            AnswerBytes(3, 0, 0))
      << "SET_IDLE";
  EXPECT_EQ(get({0x81, 6, 0, 0x21, 0, 0, 9, 0}, 9),
            AnswerBytes(1, 0, 9, {9, 0x21, 0x11, 0x01, 0, 1, 0x22, 25, 0}));
  EXPECT_EQ(get({0x81, 6, 0, 0x22, 0, 0, 64, 0}, 64),
            AnswerBytes(1, 0, 25, {0x06, 0x4C, 0xFF, 0x09, 3,    0xA1, 0x01, 0x15, 0x00,
                                   0x26, 0xFF, 0x00, 0x75, 0x08, 0x95, 0x40, 0x09, 0x10,
                                   0x81, 0x02, 0x09, 0x11, 0x91, 0x02, 0xC0}))
      << "the report descriptor";
}

TEST(VirtualBoard, AnswersWhicheverComesFirstTheRequestOrTheReader) {
  Fixture fixture(Spi());
  EXPECT_THAT(fixture.Says(InBytes(1)), IsEmpty());
  EXPECT_EQ(fixture.Says(OutBytes(2, Report(kIdentity))),
            Joined(AnswerBytes(2, 0, 64), Answered(1, {6, 1, 0x10, 1})));
  EXPECT_EQ(fixture.Says(OutBytes(3, Report(kIdentity))), AnswerBytes(3, 0, 64));
  EXPECT_EQ(fixture.board.NextStep(), std::nullopt) << "nobody waits for the answer";
  EXPECT_EQ(fixture.Says(InBytes(4)), Answered(4, {6, 1, 0x10, 1}));
  fixture.Says(InBytes(5));
  const SetupBytes set_report = {0x21, 9, 0, 2, 0, 0, 64, 0};
  EXPECT_EQ(fixture.Says(SubmitBytes(6, false, 0, 64, set_report, Report(kIdentity))),
            Joined(AnswerBytes(6, 0, 64), Answered(5, {6, 1, 0x10, 1})))
      << "on the control endpoint";
}

TEST(VirtualBoard, KeepsTheConfigurationApartFromTheGame) {
  sim::BoardSpec spec = Joystick();
  spec.blocks["hat"] = {0x01, 0xAA, 0x03, 0x55};
  Fixture fixture(spec);
  EXPECT_THAT(fixture.Says(Joined(InBytes(1, 1), InBytes(2, 2))), IsEmpty());
  EXPECT_EQ(fixture.Says(OutBytes(3, Report(0x13), 2)),
            Joined(AnswerBytes(3, 0, 64), Answered(2, {0x13, 0x01, 0xAA, 0x03, 0x55})));
}

TEST(VirtualBoard, TakesItsTimeForAnErase) {
  Fixture fixture(Spi(true));
  fixture.Says(InBytes(1));
  EXPECT_EQ(fixture.Says(OutBytes(2, Report(kErase))), AnswerBytes(2, 0, 64));
  EXPECT_THAT(fixture.board.NextStep(), Optional(kStart + milliseconds(700)));
  EXPECT_THAT(fixture.After(milliseconds(699)), IsEmpty());
  // What is asked meanwhile is begun after it.
  EXPECT_EQ(fixture.Says(Joined(InBytes(3), OutBytes(4, Report(kErase)))), AnswerBytes(4, 0, 64));
  EXPECT_EQ(fixture.After(milliseconds(1)), Answered(1, {kErase}));
  EXPECT_THAT(fixture.After(milliseconds(699)), IsEmpty());
  EXPECT_EQ(fixture.After(milliseconds(1)), Answered(3, {kErase}));
}

TEST(VirtualBoard, GivesBackTransfersThatTheHostDoesNotWantAnyMore) {
  Fixture fixture(Spi());
  EXPECT_THAT(fixture.Says(Joined(InBytes(1), InBytes(2))), IsEmpty());
  EXPECT_EQ(fixture.Says(UnlinkBytes(3, 1)), UnlinkedBytes(3, kTakenBack));
  EXPECT_EQ(fixture.Says(UnlinkBytes(4, 1)), UnlinkedBytes(4, 0)) << "not there any more";
  EXPECT_EQ(fixture.Says(OutBytes(5, Report(kIdentity))),
            Joined(AnswerBytes(5, 0, 64), Answered(2, {6, 1, 0x10, 1})));
}

TEST(VirtualBoard, StallsWhatItDoesNotKnow) {
  const auto get = [](const SetupBytes& setup) { return SubmitBytes(7, true, 0, 64, setup); };
  const std::pair<const char*, Wire> cases[] = {
      {"a short report", OutBytes(7, Wire(63), 2)},
      {"a long report", OutBytes(7, Wire(65), 2)},
      {"an empty report", OutBytes(7, {}, 2)},
      {"a report for the game", OutBytes(7, Report(kIdentity), 1)},
      {"an endpoint that is not there", OutBytes(7, Report(kIdentity), 3)},
      {"a reader of one", InBytes(7, 0xFFFFFFFF)},
      {"a setup against its direction", SubmitBytes(7, false, 0, 0, {0x80, 6, 0, 1, 0, 0, 18, 0})},
      {"a second device", get({0x80, 6, 1, 1, 0, 0, 64, 0})},
      {"a second configuration", get({0x80, 6, 1, 2, 0, 0, 64, 0})},
      {"a string that is not there", get({0x80, 6, 4, 3, 9, 4, 64, 0})},
      {"boards know full speed only", get({0x80, 6, 0, 6, 0, 0, 64, 0})},
      {"an interface that is not there", get({0x81, 6, 0, 0x22, 2, 0, 64, 0})},
      {"a descriptor that no interface has", get({0x81, 6, 0, 0x23, 0, 0, 64, 0})},
      {"another configuration", SubmitBytes(7, false, 0, 0, {0x00, 9, 2, 0, 0, 0, 0, 0})},
      {"GET_REPORT", get({0xA1, 1, 0, 1, 1, 0, 64, 0})},
      {"a report for the game's control",
       SubmitBytes(7, false, 0, 64, {0x21, 9, 0, 2, 0, 0, 64, 0}, Report(kIdentity))},
      {"a feature report",
       SubmitBytes(7, false, 0, 64, {0x21, 9, 0, 3, 1, 0, 64, 0}, Report(kIdentity))},
      {"a vendor's request", SubmitBytes(7, true, 0, 8, {0xC0, 6, 0, 1, 0, 0, 8, 0})},
  };
  for (const auto& [about, bytes] : cases) {
    Fixture fixture(Joystick());
    EXPECT_EQ(fixture.Says(bytes), AnswerBytes(7, kStalled, 0)) << about;
    EXPECT_THAT(fixture.Says(InBytes(8, 2)), IsEmpty()) << about;
  }
}

TEST(VirtualBoard, SendsNoMoreThanTheHostHasRoomFor) {
  Fixture fixture(Spi());
  EXPECT_EQ(fixture.Says(SubmitBytes(1, true, 0, 2, {0x80, 6, 0, 1, 0, 0, 255, 0})),
            AnswerBytes(1, 0, 2, {18, 1}));
  fixture.Says(SubmitBytes(2, true, 1, 3));
  EXPECT_EQ(fixture.Says(OutBytes(3, Report(kIdentity))),
            Joined(AnswerBytes(3, 0, 64), AnswerBytes(2, 0, 3, {6, 1, 0x10})));
}

TEST(VirtualBoard, UnplugsItselfFromAConversationWithoutSense) {
  Fixture fixture(Spi());
  fixture.Says(InBytes(1));
  EXPECT_THAT(fixture.Says(Wire(48, 'x')), IsEmpty());
  EXPECT_FALSE(fixture.board.OnBus());
  EXPECT_THAT(fixture.Says(InBytes(2)), IsEmpty());
  EXPECT_EQ(fixture.board.NextStep(), std::nullopt);
}

TEST(VirtualBoard, LetsGoWrongWhatTheRigSays) {
  using sim::FaultKind;
  const struct {
    FaultKind kind;
    std::uint8_t value;
    Wire expected;
    bool stays;
  } cases[] = {
      {FaultKind::kWriteFails, 0, AnswerBytes(2, kStalled, 0), true},
      {FaultKind::kReadFails, 0, AnswerBytes(2, 0, 64), true},
      {FaultKind::kStall, 0, AnswerBytes(2, 0, 64), true},
      {FaultKind::kShortAnswer, 3,
       Joined(AnswerBytes(2, 0, 64), AnswerBytes(1, 0, 3, {6, 1, 0x10})), true},
      {FaultKind::kShortAnswer, 0, Joined(AnswerBytes(2, 0, 64), AnswerBytes(1, 0, 0)), true},
      {FaultKind::kVanish, 0, AnswerBytes(2, 0xFFFFFFB9, 0), false},
  };
  for (const auto& [kind, value, expected, stays] : cases) {
    sim::BoardSpec spec = Spi();
    spec.faults = {{.kind = kind, .value = value}};
    Fixture fixture(spec);
    fixture.Says(InBytes(1));
    EXPECT_EQ(fixture.Says(OutBytes(2, Report(kIdentity))), expected) << static_cast<int>(kind);
    EXPECT_EQ(fixture.board.OnBus(), stays) << static_cast<int>(kind);
    EXPECT_THAT(fixture.After(std::chrono::minutes(1)), IsEmpty());
    EXPECT_EQ(fixture.board.OnBus(), stays) << "a board that vanished does not come back";
  }
}

TEST(VirtualBoard, RestartsWithItsAnswerAndComesBackInTheOtherMode) {
  Fixture fixture(Joystick());
  fixture.Says(Joined(InBytes(1, 2), InBytes(2, 2)));
  const Wire answers = fixture.Says(OutBytes(3, Report(kRestartOther), 2));
  EXPECT_EQ(answers, Joined(AnswerBytes(3, 0, 64), Answered(1, {kRestartOther})));
  EXPECT_THAT(fixture.board.NextStep(), Optional(kStart)) << "at once";
  fixture.After(milliseconds(0));
  EXPECT_FALSE(fixture.board.OnBus());
  EXPECT_THAT(fixture.Says(InBytes(4, 2)), IsEmpty());
  EXPECT_THAT(fixture.board.NextStep(), Optional(kStart + milliseconds(300)));
  fixture.After(milliseconds(299));
  EXPECT_FALSE(fixture.board.OnBus());
  fixture.After(milliseconds(1));
  EXPECT_TRUE(fixture.board.OnBus());
  EXPECT_EQ(fixture.board.NextStep(), std::nullopt);

  const Wire loader = {18, 1, 0, 2, 0, 0, 0, 64, 0x7E, 0x4C, 0x10, 0x09, 0x00, 0x01, 1, 2, 3, 1};
  EXPECT_EQ(fixture.Says(SubmitBytes(1, true, 0, 64, {0x80, 6, 0, 1, 0, 0, 64, 0})),
            AnswerBytes(1, 0, 18, loader));
}

TEST(VirtualBoard, LeavesAndForgetsItsTransfersHoweverQuicklyItRestarts) {
  sim::BoardSpec spec = Spi();
  spec.reboot = milliseconds(0);
  Fixture fixture(spec);
  fixture.Says(Joined(Joined(InBytes(1), InBytes(2)), OutBytes(3, Report(kRestartOther))));
  fixture.After(milliseconds(0));
  EXPECT_FALSE(fixture.board.OnBus());
  EXPECT_THAT(fixture.board.NextStep(), Optional(fixture.now));
  fixture.After(milliseconds(0));
  EXPECT_TRUE(fixture.board.OnBus());
  EXPECT_EQ(fixture.Says(Joined(InBytes(4), OutBytes(5, Report(kIdentity)))),
            Joined(AnswerBytes(5, 0, 64), Answered(4, {6, 1, 0x10, 1})));
}

TEST(VirtualBoard, RestartsThoughNobodyFetchesItsAnswer) {
  Fixture fixture(Spi());
  fixture.Says(OutBytes(1, Report(kRestartOther)));
  EXPECT_THAT(fixture.board.NextStep(), Optional(kStart + milliseconds(100)));
  fixture.After(milliseconds(99));
  EXPECT_TRUE(fixture.board.OnBus());
  fixture.After(milliseconds(1));
  EXPECT_FALSE(fixture.board.OnBus());
}

TEST(VirtualBoard, KeepsWhatItStoresInItsFolder) {
  const auto folder = testing::OwnFolders::Root();
  {
    VirtualBoard board(Spi(), folder);
    board.Receive(OutBytes(1, Report(kSetSerial, 0, {'0', '4', '2'})), kStart);
    board.Unplug();
  }
  EXPECT_EQ(VirtualBoard(Spi(), folder).Wired().SerialText(), "042");
}

}  // namespace
}  // namespace quillon::usbip
