// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <cstring>

#include "access/InstallCommand.h"
#include "app/CProblemLine.h"
#include "app/MainFixture.h"
#include "devlink/NoLibrary.h"
#include "testing/pages/PageFixture.h"
#include "tree/CDeviceTreeCtrl.h"

namespace quillon::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

struct ListedBoard {
  std::string name;
  Problem problem{};
};

// Lists boards that answer nothing, each with its problem.
class ProblemLibrary : public NoLibrary {
 public:
  explicit ProblemLibrary(std::vector<ListedBoard> its_boards, std::string reason = {})
      : NoLibrary(std::move(reason)), boards(std::move(its_boards)) {}

  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t type) override {
    if (type != KVUSB_TYPE_FIRMWARE) return 0;
    for (std::size_t i = 0; i < boards.size(); ++i) {
      free[i] = {};
      free[i].product_id = 0x1600;  // without pages
      free[i].library_a[0] = static_cast<std::uint8_t>(i);
      std::strcpy(free[i].product_text, boards[i].name.c_str());
      std::strcpy(free[i].serial_number, "1");
    }
    count = static_cast<std::uint32_t>(boards.size());
    return 1;
  }
  Problem DescribeProblem(const DeviceRecord* record) override {
    if (record == nullptr) return NoLibrary::DescribeProblem(record);
    return boards[record->library_a[0]].problem;
  }

  std::vector<ListedBoard> boards;
};

Problem Locked(const std::string& sentence = "No.") { return {KVUSB_PROBLEM_PERMISSION, sentence}; }
Problem InUse(const std::string& sentence) { return {KVUSB_PROBLEM_IN_USE, sentence}; }

// The window over such a library, after its first detection.
struct ProblemFixture {
  explicit ProblemFixture(std::vector<ListedBoard> boards, FoundRule rule = {},
                          bool offers_access = true, const std::string& reason = {})
      : library(std::move(boards), reason), main(library, offers_access) {
    main.access.rule = std::move(rule);
    main.window.Initialise();
    main.settled = 0;
  }

  bool IsShown(const QWidget& widget) const { return widget.isVisibleTo(&main.window); }

  std::vector<std::string> Lines() {
    const auto& text = Named<QLabel>(main.window, "What keeps boards from working");
    if (!IsShown(text)) return {};
    std::vector<std::string> lines;
    for (const QString& line : text.text().split('\n')) lines.push_back(line.toStdString());
    return lines;
  }

  // What is said last, which is the outcome of a button once one was pressed.
  std::string Outcome() { return Lines().back(); }

  // The texts of the buttons that are offered.
  std::vector<std::string> Buttons() {
    std::vector<std::string> texts;
    for (auto* const button :
         main.window.findChild<CProblemLine*>()->findChildren<QPushButton*>()) {
      if (IsShown(*button)) texts.push_back(button->text().toStdString());
    }
    return texts;
  }

  void PressInstall() { Button(main.window, "Install udev Rule").click(); }

  ProblemLibrary library;
  MainFixture main;
};

std::string Count(int boards) {
  return "Boards that cannot be used: " + std::to_string(boards) +
         ". Point at one in the tree to see why.";
}

constexpr const char* kMissing =
    "The udev rule that lets whoever sits at this computer open the boards is not installed.";

}  // namespace

TEST(ProblemLine, SaysNothingWhileAllIsWell) {
  ProblemFixture fixture({{"Stick"}});
  EXPECT_FALSE(fixture.IsShown(*fixture.main.window.findChild<CProblemLine*>()));
  // And nothing any more.
  fixture.library.boards[0].problem = Locked();
  fixture.main.window.Redetect();
  EXPECT_THAT(fixture.Lines(), Not(IsEmpty()));
  fixture.library.boards[0].problem = {};
  fixture.main.window.Redetect();
  EXPECT_FALSE(fixture.IsShown(*fixture.main.window.findChild<CProblemLine*>()));
  EXPECT_THAT(fixture.Buttons(), IsEmpty());
}

TEST(ProblemLine, TellsHowManyBoardsCannotBeUsed) {
  const std::vector<ListedBoard> boards{
      {"A", InUse("Held.")}, {"B"}, {"C", {77, "Of a kind to come."}}, {"D", Locked()}};
  EXPECT_THAT(ProblemFixture({{"A"}, {"B", Locked()}}, {}, false).Lines(), ElementsAre(Count(1)));
  EXPECT_THAT(ProblemFixture(boards, {}, false).Lines(), ElementsAre(Count(3)));
  EXPECT_THAT(ProblemFixture(boards, {}, true, "<b>%1\a").Lines(),
              ElementsAre("<b>%1\uFFFD", Count(3), kMissing));
  EXPECT_THAT(ProblemFixture({}, {}, true, "It is odd.").Lines(), ElementsAre("It is odd."));
}

TEST(ProblemLine, OffersWhatTheStateOfTheRuleAsksFor) {
  const struct {
    FoundRule rule;
    std::string advice;
    std::vector<std::string> buttons;
  } cases[]{
      {{RuleState::kMissing, ""}, kMissing, {"&Install udev Rule", "&Copy Command"}},
      {{RuleState::kOutdated, "/etc/r"},
       "The udev rule that lets whoever sits at this computer open the boards is out of date "
       "(/etc/r).",
       {"&Update udev Rule", "&Copy Command"}},
      {{RuleState::kCurrent, "/etc/r"},
       "The udev rule that lets whoever sits at this computer open the boards is installed "
       "(/etc/r). Plug the boards in again while your session is on this computer's screen.",
       {}},
      {{RuleState::kMasked, "/etc/r"},
       "The udev rule that lets whoever sits at this computer open the boards is turned off by "
       "/etc/r. An administrator can remove that file, and you can refresh then.",
       {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.advice);
    ProblemFixture fixture({{"A", Locked()}}, c.rule);
    EXPECT_THAT(fixture.Lines(), ElementsAre(Count(1), c.advice));
    EXPECT_EQ(fixture.Buttons(), c.buttons);
  }
  // Only where a permission is missing, and where the system offers something.
  EXPECT_THAT(ProblemFixture({{"A", InUse("Held.")}}).Buttons(), IsEmpty());
  EXPECT_THAT(ProblemFixture({{"A", Locked()}}, {}, false).Buttons(), IsEmpty());
}

TEST(ProblemLine, InstallsTheRuleAndDetectsOnceWhenItIsThere) {
  ProblemFixture fixture({{"A", Locked()}});
  auto& access = fixture.main.access;
  fixture.PressInstall();
  ASSERT_EQ(access.runs.size(), 1U);
  ASSERT_EQ(access.runs[0].size(), 4);
  EXPECT_EQ(access.runs[0].last().toStdString(), ElevatedArguments().back());
  EXPECT_EQ(access.runs[0][1], "/bin/sh");

  auto& install = Button(fixture.main.window, "Install udev Rule");
  EXPECT_FALSE(install.isEnabled());
  EXPECT_EQ(fixture.Outcome(), "The rule is being installed.");
  EXPECT_TRUE(Button(fixture.main.window, "Copy Command").isEnabled());
  // A board that comes meanwhile changes nothing about it.
  fixture.main.window.Redetect();
  EXPECT_FALSE(install.isEnabled());
  install.click();
  EXPECT_EQ(access.runs.size(), 1U);

  fixture.main.settled = 0;
  fixture.library.boards[0].problem = {};
  {
    const auto hold = fixture.main.link.gate.Enter();
    access.done({ElevatedEnd::kDone});
    fixture.main.RunEvents();
    EXPECT_EQ(fixture.main.settled, 0) << "not while something is under way";
    EXPECT_EQ(fixture.Outcome(), "The rule is installed.");
  }
  fixture.main.RunEvents();
  EXPECT_EQ(fixture.main.settled, 1);
  EXPECT_THAT(fixture.Lines(), IsEmpty());
}

TEST(ProblemLine, SaysWhyTheRuleWasNotInstalledAndLetsOneTryAgain) {
  const struct {
    ElevatedResult result;
    std::string outcome;
  } cases[]{
      {{ElevatedEnd::kDismissed, "Request dismissed"}, "The rule was not installed."},
      {{ElevatedEnd::kFailed},
       "The rule was not installed. Copy the command and run it in a terminal."},
      {{ElevatedEnd::kFailed, "mv: %1\tdisk"},
       "The rule was not installed. Copy the command and run it in a terminal. The system says: "
       "mv: %1\uFFFDdisk"},
  };
  ProblemFixture fixture({{"A", Locked()}});
  for (const auto& c : cases) {
    SCOPED_TRACE(c.outcome);
    fixture.PressInstall();
    EXPECT_EQ(fixture.Outcome(), "The rule is being installed.") << "no longer the last try";
    fixture.main.access.done(c.result);
    EXPECT_EQ(fixture.Outcome(), c.outcome);
    EXPECT_TRUE(Button(fixture.main.window, "Install udev Rule").isEnabled());
  }
  fixture.main.RunEvents();
  EXPECT_EQ(fixture.main.settled, 0) << "nothing has changed for the boards";
}

TEST(ProblemLine, CopiesTheCommand) {
  ProblemFixture fixture({{"A", Locked()}});
  Button(fixture.main.window, "Copy Command").click();
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), CopyableCommand());
  EXPECT_EQ(fixture.Outcome(),
            "The command is in the clipboard. Paste it into a terminal and run it, then choose "
            "\"Refresh device list\" in the menu of the tree.");
  EXPECT_THAT(fixture.main.access.runs, IsEmpty());
}

TEST(ProblemLine, IsUsedByKeyboard) {
  ProblemFixture fixture({{"A", Locked()}}, {}, true, QString("Wwww ").repeated(180).toStdString());
  auto& window = fixture.main.window;
  window.resize(640, 420);
  window.show();
  window.activateWindow();
  MainFixture::RunEvents();
  auto& install = Button(window, "Install udev Rule");
  auto& copy = Button(window, "Copy Command");
  const auto press = [](QWidget& widget, int key) {
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier), up(QEvent::KeyRelease, key, {});
    QApplication::sendEvent(&widget, &down);
    QApplication::sendEvent(&widget, &up);
  };
  auto& text = Named<QLabel>(window, "What keeps boards from working");
  text.setFocus(Qt::TabFocusReason);
  EXPECT_LT(window.findChild<CProblemLine*>()->height(), window.height() * 2 / 5);
  for (int i = 0; i < text.height(); ++i) press(text, Qt::Key_Down);
  EXPECT_EQ(text.visibleRegion().boundingRect().bottom(), text.rect().bottom());
  press(*window.focusWidget(), Qt::Key_Tab);
  ASSERT_EQ(window.focusWidget(), &install);
  press(install, Qt::Key_Tab);
  EXPECT_EQ(window.focusWidget(), &copy);
  install.setFocus();
  press(install, Qt::Key_Space);
  EXPECT_EQ(fixture.main.access.runs.size(), 1U);
  EXPECT_EQ(window.focusWidget(), &copy) << "the next one, as this one is disabled now";
  fixture.library.boards[0].problem = {};
  fixture.main.access.done({ElevatedEnd::kDone});
  fixture.main.RunEvents();
  EXPECT_EQ(window.focusWidget(), &window.Tree()) << "once the buttons are gone";
}

TEST(ProblemLine, DoesNotDecideTheWindowsWidth) {
  ProblemFixture calm({{"A"}});
  ProblemFixture wordy({{"A", Locked()}}, {}, true, std::string(900, 'W'));
  wordy.PressInstall();
  wordy.main.access.done({ElevatedEnd::kFailed, QString(300, 'W')});
  EXPECT_EQ(wordy.main.window.minimumSizeHint().width(),
            calm.main.window.minimumSizeHint().width());
}

TEST(ProblemLine, DetectsNothingWhenTheRunOutlivesTheWindow) {
  std::function<void(const ElevatedResult&)> done;
  {
    ProblemFixture fixture({{"A", Locked()}});
    fixture.PressInstall();
    done = fixture.main.access.done;
    EXPECT_TRUE(fixture.main.window.close());
    done({ElevatedEnd::kDone});
    fixture.main.RunEvents();
    EXPECT_EQ(fixture.main.settled, 0) << "closed for good";
  }
  done({ElevatedEnd::kDone});  // finds nobody to tell
}

}  // namespace quillon::testing
