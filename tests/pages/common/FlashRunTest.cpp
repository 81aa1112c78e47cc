// SPDX-License-Identifier: MIT
#include <QGuiApplication>
#include <QMouseEvent>
#include <QProgressBar>
#include <QStyleHints>
#include <functional>

#include "pages/common/DeviceConfigFixture.h"

// Runs of the flash update on the page: its controls, its log and its messages.
namespace quillon::testing {
namespace {

using Icon = UserPrompts::Icon;

constexpr int kRecords = 3;  // exchange 1 is the erase, the one behind the records the finish

constexpr const char* kProgrammable = "Refresh serial Set Reboot Program Load...";
constexpr const char* kExecutable = "Refresh Device serial Set Reboot Execute Load...";

const std::string kErasing = "\r\n\r\nErasing Device . . . ";
const std::string kBegun = kErasing + "Completed.\r\nBeginning flash update . . . ";
const std::string kComplete = "\r\nFlash Update Complete!\r\n";
const std::string kFailure = "\r\nFlash Update Failure!\r\n";
const std::string kAborted = "\r\nFlash Update Aborted!\r\n";

// The log as the text box gives it back.
std::string Lines(QString text) { return text.replace("\r\n", "\n").toStdString(); }
std::string Lines(const std::string& text) { return Lines(QString::fromStdString(text)); }

class RunFixture : public DeviceConfigFixture {
 public:
  explicit RunFixture(const std::string& fields = kInFlashMode) : DeviceConfigFixture(fields) {
    QObject::connect(&run, &StackRun::Begun, [this] { ++started; });
    QObject::connect(&run, &StackRun::Ended, [this] {
      ++ended;
      EXPECT_TRUE(fixture.link.gate.IsOpen()) << "what waited for the run can follow";
    });
  }

  void LoadFirmware() { Load(WriteFile("new.kvx", Firmware(kRecords))); }
  void ExpectFailure() {
    fixture.prompts.ExpectMessage("Flash update failed!", "Flash Update Fail", Icon::kExclamation);
  }
  void ExpectSuccess() {
    fixture.prompts.ExpectMessage(
        "Flash update completed successfully!\r\n\r\nYou may click on the Execute button to "
        "restart the module\r\nin Device Mode.",
        "Flash Update Complete", Icon::kInformation);
  }

  // Clicks "Program"; the log that this adds.
  std::string Program() {
    const std::size_t before = Log().size();
    const int runs = ended;
    Click("Program");
    EXPECT_EQ(started, runs + 1);
    EXPECT_EQ(ended, runs + 1);
    return Log().substr(before);
  }

  // Runs an event between this record, counted from 1, and the next.
  void AfterRecord(int record, const std::function<void()>& event) {
    library.BeforeWrite({.nth = record, .command = 0}, [this, event] {
      QMetaObject::invokeMethod(&page, event, Qt::QueuedConnection);
    });
  }

  int Bar() const { return page.findChild<QProgressBar*>()->value(); }

  void ExpectSecondRunSucceeds() {
    ExpectSuccess();
    EXPECT_EQ(Program(), Lines(kBegun + kComplete));
    EXPECT_EQ(Enabled(), kExecutable);
    EXPECT_TRUE(Board().flash.valid);
    EXPECT_EQ(Board().flash.Version(), 0x0283);
    EXPECT_EQ(Board().flash.bytes.size(), 4U * kRecords);
    Click("Execute");
    EXPECT_FALSE(Board().flash_mode);
  }

  int started = 0, ended = 0;
};

// The board does what it is told in this exchange, but answers with an error.
std::function<void(RunFixture&)> Refuses(int exchange, std::uint8_t status) {
  return [=](RunFixture& b) { b.library.AnswerWithEcho({.nth = exchange}, status); };
}

std::string ErrorCode(const std::string& name) { return "\r\nError Code: " + name + "!\r\n"; }

}  // namespace

TEST(FlashRun, LeavesTheBoardProgrammableWhereverItFails) {
  const struct {
    const char* name;
    std::function<void(RunFixture&)> provoke;
    std::string log;
  } ways[]{
      {"erase not sent", [](RunFixture& b) { b.library.FailWrite({}); },
       kErasing + "Erase failed!\r\n" + kFailure},
      {"erase refused", Refuses(1, 2), kErasing + "Erase failed!\r\n" + kFailure},
      {"record refused", Refuses(2, 2), kBegun + ErrorCode("CMD_FAIL") + kFailure},
      {"flash", Refuses(2, 4), kBegun + ErrorCode("FLASH_FAIL") + kFailure},
      {"configuration", Refuses(3, 5), kBegun + ErrorCode("CONFIG_FAIL") + kFailure},
      {"EEPROM", Refuses(kRecords + 1, 6), kBegun + ErrorCode("EEPROM_FAIL") + kFailure},
      {"vanishes",
       [](RunFixture& b) { b.bus.ProvokeFault("b", {.kind = sim::FaultKind::kVanish, .nth = 3}); },
       kBegun + kFailure},
      {"last record not answered", [](RunFixture& b) { b.library.FailRead({.nth = kRecords + 1}); },
       kBegun + kFailure},
  };
  for (const auto& way : ways) {
    SCOPED_TRACE(way.name);
    RunFixture run;
    run.LoadFirmware();
    way.provoke(run);
    run.ExpectFailure();
    EXPECT_EQ(run.Program(), Lines(way.log));
    EXPECT_EQ(run.Enabled(), kProgrammable);
    EXPECT_TRUE(run.Board().flash_mode);

    run.bus.Plug("b");
    run.Detect();
    EXPECT_EQ(run.fixture.link.table.CurrentType(), 1U) << "listed in Flash Mode";
    EXPECT_EQ(run.Enabled(), kProgrammable) << "after a new report as before it";
    // Intended: of an erase only 2 counts, 3 is no error, and the finish is not judged.
    run.library.AnswerWithEcho({.nth = 1}, 4);
    run.library.AnswerWithEcho({.nth = 2}, 3);
    run.library.FailRead({.nth = kRecords + 2});
    run.ExpectSecondRunSucceeds();
  }
}

TEST(FlashRun, DisablesAllButAbortUntilItEnds) {
  RunFixture run;
  run.LoadFirmware();
  EXPECT_EQ(run.Log(), "File : new.kvx loaded.");
  std::vector<std::string> seen;
  run.library.BeforeWrite({.nth = 1, .onwards = true}, [&] {
    if (run.ended > 0) return;
    EXPECT_FALSE(run.fixture.link.gate.IsOpen());
    seen.push_back(run.Enabled());
    // The second press of a double click on "Program" is not meant for "Abort".
    QMouseEvent again(QEvent::MouseButtonDblClick, {3, 3}, {3, 3}, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&run.Press("Abort"), &again);
    EXPECT_FALSE(run.Press("Abort").isDown());
  });
  run.ExpectSuccess();
  run.fixture.prompts.WhileOpen([&] {
    run.run.StopRun();  // as closing the window does, too late
    EXPECT_EQ(run.Enabled(), kExecutable);
    EXPECT_EQ(run.started, 1);
    EXPECT_EQ(run.ended, 0) << "tree and menu follow the message";
  });
  EXPECT_EQ(run.Program(), Lines(kBegun + kComplete));
  EXPECT_THAT(seen, ::testing::AllOf(::testing::SizeIs(kRecords + 2), ::testing::Each("Abort")));
  EXPECT_EQ(run.Bar(), kRecords);
  run.Detect();
  EXPECT_EQ(run.Bar(), 0);
  EXPECT_EQ(run.Enabled(), kExecutable);
  run.Load(std::nullopt);
  EXPECT_EQ(run.Enabled(), kExecutable) << "what the board holds does not depend on the file";
  run.Detect();
  EXPECT_EQ(run.Enabled(), "Refresh Device serial Set Reboot Load...");
  run.LoadFirmware();
  EXPECT_EQ(run.Enabled(), "Refresh Device serial Set Reboot Program Load...");
}

TEST(FlashRun, AbortsBeforeTheNextRecordAndStartsNothingInBetween) {
  for (int record = 1; record <= kRecords; ++record) {
    SCOPED_TRACE(record);
    RunFixture run;
    int refreshes = 0;
    QObject::connect(&run.page, &CDeviceConfigPage::RefreshRequested, [&] { ++refreshes; });
    run.LoadFirmware();
    run.AfterRecord(record, [&] {
      run.Click("Abort");
      EXPECT_EQ(run.Enabled(), kProgrammable);
      // Enabled they are, but the run is still on the stack.
      for (const char* const button : {"Program", "Set", "Reboot", "Load..."}) run.Click(button);
      EXPECT_EQ(run.started, 1);
    });
    if (record == kRecords) {
      run.ExpectSuccess();
      EXPECT_EQ(run.Program(), Lines(kBegun + kComplete)) << "too late";
      EXPECT_EQ(run.Enabled(), kExecutable);
      continue;
    }
    EXPECT_EQ(run.Program(), Lines(kBegun + "Aborted!" + kAborted));
    EXPECT_EQ(run.Enabled(), kProgrammable);
    EXPECT_EQ(run.Bar(), 0);
    EXPECT_TRUE(run.Board().flash_mode);
    EXPECT_FALSE(run.Board().flash.valid);
    EXPECT_EQ(run.Board().flash.bytes.size(), 4U * static_cast<unsigned>(record));
    const auto interval = QGuiApplication::styleHints()->mouseDoubleClickInterval();
    run.now += std::chrono::milliseconds(interval - 1);
    run.Click("Program");
    EXPECT_EQ(run.started, 1) << "the second click of two on Abort";
    run.now += std::chrono::milliseconds(1);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
    run.Press("Program").setAutoDefault(true);  // as in a dialog
    QCoreApplication::sendEvent(&run.Press("Program"), &held);
    EXPECT_EQ(run.started, 1);
    run.ExpectSecondRunSucceeds();
  }
}

TEST(FlashRun, SaysWhichBoardItWasAbout) {
  RunFixture run(std::string(kInFlashMode) + R"(, "serial": "001"},
      {"id": "c", "product": "0x0910", "serial": "002", "firmware": "2.71", "mode": "flash")");
  // Which boards the tool tips of "Program" and "Execute" name.
  const auto named = [&](unsigned selected) {
    run.fixture.link.table.SetCurrent(selected);
    run.page.ShowDeviceInfo();
    std::string all;
    for (const char* const button : {"Program", "Execute"}) {
      const QString tip = run.Press(button).toolTip();
      all += std::string(tip.contains(": 001") ? "1" : "") + (tip.contains(": 002") ? "2;" : ";");
    }
    return all;
  };
  run.LoadFirmware();
  EXPECT_EQ(named(0), "1;1;");
  run.ExpectSuccess();
  run.Program();
  EXPECT_EQ(named(0), "1;1;");
  EXPECT_EQ(named(1), "12;12;");
  run.LoadFirmware();
  EXPECT_EQ(named(1), "2;2;");
}

TEST(FlashRun, ErasesAndFinishesWithAFileWithoutRecords) {
  RunFixture run;
  run.Load(WriteFile("empty.kvx", {0x10, 0x09}));
  run.ExpectSuccess();
  EXPECT_EQ(run.Program(), Lines(kBegun + kComplete));
  EXPECT_TRUE(run.Board().flash.bytes.empty());
  // The board refuses to run what is no firmware, and stays in its loader.
  run.Click("Execute");
  EXPECT_TRUE(run.Board().flash_mode);
}

}  // namespace quillon::testing
