// SPDX-License-Identifier: MIT
//
// The program on what it meets in the world: its own library over hidapi, the kernel's list and
// udev's events. Only the boards are simulated, as devices of an emulated kernel.
#include <gmock/gmock.h>
#include <unistd.h>

#include <QApplication>
#include <QElapsedTimer>

#include "app/BoardNotifier.h"
#include "app/CMainDialog.h"
#include "app/Profile.h"
#include "app/UdevNotifier.h"
#include "devlink/LoadedLibrary.h"
#include "kernel/EmulatedKernel.h"
#include "pages/common/CPageSet.h"
#include "pages/common/CSettingsPage.h"
#include "testing/pages/OwnWeb.h"
#include "testing/pages/PageFixture.h"
#include "testing/pages/ScriptedPrompts.h"
#include "tree/CDeviceTreeCtrl.h"
#include "widgets/CGridCtrl.h"

namespace quillon::testing {
namespace {

using ::testing::ElementsAre;

sim::Rig RigOf(const char* boards) {
  auto rig = sim::ParseRig(std::string(R"({"boards": [)") + boards + "]}");
  return std::get<sim::Rig>(std::move(rig));
}

constexpr const char* kTwoJoysticks = R"(
    {"id": "one", "product": "0x0910", "firmware": "2.82", "serial": "001"},
    {"id": "two", "product": "0x0910", "firmware": "2.82", "serial": "002"})";

// Turns the event loop until it holds, or for far longer than that can take.
template <typename Condition>
bool Comes(Condition condition) {
  QElapsedTimer time;
  for (time.start(); time.elapsed() < 20000;) {
    if (condition()) return true;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
  }
  return condition();
}

class Events {
 public:
  explicit Events(DeviceNotifier& notifier) {
    EXPECT_TRUE(
        notifier.Start([this](std::uint32_t event, std::uint32_t type, std::string_view path) {
          EXPECT_TRUE(IsBoardChange(event, type, path)) << path;
          told.push_back(event == KVUSB_EVENT_ARRIVAL ? '+' : '-');
        }));
  }
  std::string told;
};

// The listener in this process gets its turn.
void LetListen() { QCoreApplication::processEvents(); }

TEST(UdevNotifier, TellsOfEachBoardOnceAndOfNoOthers) {
  EmulatedKernel kernel(LetListen);
  kernel.Add(RigOf(kTwoJoysticks));
  UdevNotifier notifier;
  kernel.Unplug(1);
  Events events(notifier);
  EXPECT_TRUE(Comes([&] { return events.told == "-"; })) << "it left before the start";
  kernel.AddOthers(5);
  kernel.Plug(1);
  kernel.Unplug(0);
  kernel.Plug(0);
  EXPECT_TRUE(Comes([&] { return events.told == "-+-+"; })) << events.told;
  kernel.Add(RigOf(R"({"id": "three", "product": "0x0800", "firmware": "1.10"})"));
  EXPECT_TRUE(Comes([&] { return events.told == "-+-++"; })) << events.told;
}

// The main window over the loaded library, its notifier included.
class Program {
 public:
  Program()
      : library(std::get<std::unique_ptr<HidLibrary>>(LoadLibraryFile(HID_LIBRARY))),
        link(*library),
        notifier(MakeBoardNotifier(*library)),
        window({link, prompts, *notifier, profile,
                [this] {
                  ++detections;
                  if (on_settle) on_settle();
                },
                web.Services(), web.Documents()}) {
    window.Initialise();
  }

  std::vector<std::string> Boards() {
    const auto& model = *window.Tree().model();
    std::vector<std::string> labels;
    for (int root = 0; root < model.rowCount(); ++root) {
      const QModelIndex parent = model.index(root, 0);
      for (int row = 0; row < model.rowCount(parent); ++row)
        labels.push_back(model.index(row, 0, parent).data().toString().toStdString());
    }
    return labels;
  }

  // The page of an enabled tab; null where there is none.
  CSettingsPage* Page(const QString& title) const {
    CTabSet* const set = window.ShownPageSet();
    for (int i = 0; i < set->count(); ++i) {
      if (set->tabText(i) != title || !set->isTabEnabled(i)) continue;
      set->setCurrentIndex(i);
      return set->Page(i);
    }
    return nullptr;
  }

  std::unique_ptr<HidLibrary> library;
  BoardLink link;
  ScriptedPrompts prompts;
  std::unique_ptr<DeviceNotifier> notifier;
  Profile profile;
  int detections = 0;
  std::function<void()> on_settle;
  OwnWeb web;
  CMainDialog window;
};

constexpr const char* kFirst = "Joystick Controller (simulated) : 001";
constexpr const char* kSecond = "Joystick Controller (simulated) : 002";
constexpr const char* kNone = "Non Detected";

TEST(RealBoards, ARetrievedUpdatedUnpluggedAndReplugged) {
  EmulatedKernel kernel(LetListen);
  kernel.Add(RigOf(kTwoJoysticks));
  Program program;
  EXPECT_THAT(program.Boards(), ElementsAre(kNone, kFirst, kSecond));

  CSettingsPage* const page = program.Page(QStringLiteral("Analog Channels"));
  ASSERT_NE(page, nullptr);
  page->Retrieve();
  EXPECT_THAT(OriginOf(*page).toStdString(), ::testing::StartsWith("Retrieved from"));
  sim::Board& board = kernel.Board(0).TheBoard();
  const std::vector<std::uint8_t> before(board.Block("analog_a").begin(),
                                         board.Block("analog_a").end());
  const std::uint32_t shown = Grid(*page).Value(1, 1);
  Grid(*page).Click(1, 1);
  ASSERT_NE(Grid(*page).Value(1, 1), shown);
  page->Update();
  const auto after = board.Block("analog_a");
  ASSERT_EQ(after.size(), before.size());
  EXPECT_FALSE(std::equal(after.begin(), after.end(), before.begin()));
  EXPECT_EQ(kernel.Board(1).TheBoard().Block("analog_a")[0], before[0]) << "the other board";

  kernel.Unplug(0);
  EXPECT_TRUE(Comes([&] { return program.detections == 2; }));
  EXPECT_THAT(program.Boards(), ElementsAre(kNone, kSecond));
  kernel.Plug(0);
  EXPECT_TRUE(Comes([&] { return program.detections == 3; }));
  EXPECT_THAT(program.Boards(), ElementsAre(kNone, kSecond, kFirst));
  LetListen();
  EXPECT_EQ(program.detections, 3) << "one for each event, and one at the start";
}

TEST(RealBoards, ABoardPulledDuringAnyExchangeIsAnErrorAndTheOtherGoesOn) {
  for (const char* command : {"0x11", "0x15"}) {
    SCOPED_TRACE(command);
    EmulatedKernel kernel(LetListen);
    kernel.Add(RigOf((std::string(R"({"id": "one", "product": "0x0910", "firmware": "2.82",
                                      "faults": [{"kind": "vanish", "command": ")") +
                      command + R"("}]}, {"id": "two", "product": "0x0910", "firmware": "2.82",
                                         "serial": "002"})")
                         .c_str()));
    Program program;
    CSettingsPage* const page = program.Page(QStringLiteral("Analog Channels"));
    page->Retrieve();
    EXPECT_THAT(OriginOf(*page).toStdString(),
                ::testing::Not(::testing::StartsWith("Retrieved from")));
    ASSERT_TRUE(kernel.FinishRestarts());
    EXPECT_TRUE(Comes([&] { return program.detections == 2; }));
    EXPECT_THAT(program.Boards(), ElementsAre(kNone, kSecond));
    page->Retrieve();
    EXPECT_THAT(OriginOf(*page).toStdString(), ::testing::StartsWith("Retrieved from"));
  }
}

TEST(RealBoards, ABoardPulledDuringItsDetectionIsListedAndLeavesAfterwards) {
  EmulatedKernel kernel(LetListen);
  kernel.Add(RigOf(R"({"id": "nodes", "product": "0x0800", "firmware": "1.10", "queried": "1.13",
                       "faults": [{"kind": "vanish", "command": "0x06"}]},
                      {"id": "two", "product": "0x0910", "firmware": "2.82", "serial": "002"})"));
  Program program;
  EXPECT_THAT(program.Boards(), ElementsAre(kNone, kSecond, "Node I/O System (simulated) : 001"));
  EXPECT_EQ(program.link.table.Record(1).queried_version, 0);
  ASSERT_TRUE(kernel.FinishRestarts());
  EXPECT_TRUE(Comes([&] { return program.detections == 2; }));
  EXPECT_THAT(program.Boards(), ElementsAre(kNone, kSecond));
}

TEST(RealBoards, ThoseOfAHubThatComeDuringADetectionLeadToOneMore) {
  bool listening = true;
  EmulatedKernel kernel([&] {
    if (listening) LetListen();
  });
  kernel.Add(RigOf(R"({"id": "a", "product": "0x0910", "firmware": "2.82"},
                      {"id": "b", "product": "0x0510", "firmware": "2.30", "plugged": false},
                      {"id": "c", "product": "0x0510", "firmware": "2.30", "plugged": false})"));
  Program program;
  program.on_settle = [&] {
    if (program.detections > 2) return;
    listening = false;
    kernel.Plug(1);
    kernel.Plug(2);
    listening = true;
  };
  program.window.Redetect();
  EXPECT_TRUE(Comes([&] { return program.detections == 3; }));
  LetListen();
  EXPECT_EQ(program.detections, 3);
  EXPECT_EQ(program.Boards().size(), 4U);
}

TEST(RealBoards, ARestartFromTheTreeComesBackByItselfInFlashMode) {
  EmulatedKernel kernel(LetListen);
  kernel.Add(RigOf(kTwoJoysticks));
  Program program;
  emit program.window.Tree().RestartRequested(true);
  EXPECT_TRUE(kernel.IsRestartDue());
  ASSERT_TRUE(kernel.FinishRestarts());
  EXPECT_TRUE(Comes([&] { return program.detections == 3; })) << "it left and it came";
  EXPECT_THAT(program.Boards(), ElementsAre(kFirst, kSecond));
}

TEST(RealBoards, OneThatMayNotBeOpenedIsShownWithTheReason) {
  constexpr uid_t kNobody = 65534;
  const uid_t user = geteuid();
  if (user != 0) GTEST_SKIP() << "only root can become somebody else";
  EmulatedKernel kernel(LetListen);
  kernel.Add(RigOf(kTwoJoysticks));
  kernel.LetOthersOpen(false);
  ASSERT_EQ(setresuid(kNobody, kNobody, user), 0);
  Program program;
  ASSERT_EQ(setresuid(user, user, user), 0);
  EXPECT_THAT(program.Boards(), ElementsAre(kNone, kFirst, kSecond));
  const auto& model = *program.window.Tree().model();
  const QModelIndex board = model.index(1, 0, model.index(1, 0));
  EXPECT_THAT(board.data(Qt::ToolTipRole).toString().toStdString(),
              ::testing::HasSubstr("Linux does not let you open /dev/hidraw3"));
  program.window.Redetect();
  EXPECT_FALSE(model.index(1, 0, model.index(1, 0))
                   .data(Qt::ToolTipRole)
                   .toString()
                   .contains(QStringLiteral("does not let")))
      << "as soon as it may be opened";
}

}  // namespace
}  // namespace quillon::testing
