// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QFile>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <functional>

#include "app/MainFixture.h"
#include "testing/OwnFolders.h"

// Firmware into a board, through the whole window, with the notifications that it causes.
namespace quillon::testing {
namespace {

using Icon = UserPrompts::Icon;

constexpr const char* kFlashBoard =
    R"({"id": "f", "product": "0x0910", "serial": "003", "firmware": "2.71", "mode": "flash"})";

class Journey : public SimMain {
 public:
  explicit Journey(const std::string& boards) : SimMain(boards) {
    bus.SetDeviceChangeHandler(
        [](std::uint32_t event, std::uint32_t type, const char* path, void* self) {
          static_cast<Journey*>(self)->fixture.notifier.Report(event, type, path);
        },
        this);
    fixture.window.Initialise();
    fixture.settled = 0;
  }

  void Click(const QString& text) const { Press(text).click(); }

  std::string Text(int which) const {
    return fixture.window.ShownPageSet()
        ->findChildren<QPlainTextEdit*>()
        .at(which)
        ->toPlainText()
        .toStdString();
  }
  std::string Report() const { return Text(0); }
  std::string Log() const { return Text(1); }

  // Loads a file of version 2.83, in three records.
  void Load() {
    const auto name = QString::fromStdString((OwnFolders::Root() / "joystick-2.83.kvx").string());
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        QByteArray::fromHex("1009"
                            "0002000002830002000200000002000400000001"));
    file.close();
    fixture.prompts.ExpectOpenFile(name);
    Click("Load...");
  }

  void ExpectSuccess() {
    fixture.prompts.ExpectMessage(
        "Flash update completed successfully!\r\n\r\nYou may click on the Execute button to "
        "restart the module\r\nin Device Mode.",
        "Flash Update Complete", Icon::kInformation);
  }

  // Runs an event between the first record and the second.
  void DuringTheRun(const std::function<void()>& event) {
    library.BeforeWrite({.nth = 1, .command = 0}, [this, event] {
      QMetaObject::invokeMethod(&fixture.window, event, Qt::QueuedConnection);
    });
  }

  // The enabled menus and entries.
  QStringList EnabledMenu() const {
    QStringList texts;
    for (const QAction* const menu : fixture.window.menuBar()->actions()) {
      if (menu->isEnabled()) texts << menu->text();
      for (const QAction* const entry : menu->menu()->actions()) {
        if (entry->isEnabled() && !entry->isSeparator()) texts << entry->text();
      }
    }
    return texts;
  }
};

}  // namespace

TEST(FirmwareJourney, FromTheTreeToANewVersionAndSerialNumber) {
  Journey journey(R"({"id": "j", "product": "0x0910", "serial": "001", "firmware": "2.71"},
                     {"id": "o", "product": "0x0910", "serial": "002", "firmware": "2.82"})");
  const sim::BoardState& board = journey.bus.Find("j")->State();
  EXPECT_THAT(journey.Report(), ::testing::HasSubstr("WARNING: Firmware update required!"));
  journey.fixture.window.Tree().Run(DeviceTool::kRestartFlash);
  journey.fixture.RunEvents();
  EXPECT_EQ(journey.fixture.settled, 1) << "what waited for the restart, once";
  EXPECT_TRUE(board.flash_mode);
  journey.Select(": 001");
  EXPECT_THAT(journey.Report(), ::testing::HasSubstr("Loader Version"));

  journey.Load();
  journey.ExpectSuccess();
  journey.Click("Program");
  EXPECT_THAT(journey.Log(), ::testing::EndsWith("\nFlash Update Complete!\n"));
  journey.Click("Execute");
  journey.fixture.RunEvents();
  journey.Select(": 001");
  EXPECT_THAT(journey.Report(), ::testing::HasSubstr("  Flash Version : 2.83\n"));
  EXPECT_TRUE(journey.fixture.window.ShownPageSet()->isTabEnabled(1));

  journey.fixture.prompts.ExpectMessage(
      "New device serial number successfully set.\r\n\r\nClick on the REBOOT button to "
      "initialise\r\ndevice with new serial number.",
      "Serial Number", Icon::kInformation);
  journey.fixture.window.ShownPageSet()->findChild<QLineEdit*>()->setText("517");
  journey.Click("Set");
  journey.Click("Reboot");
  journey.fixture.RunEvents();
  journey.Select(": 517");
  EXPECT_THAT(journey.Report(), ::testing::HasSubstr("Device Serial Num. : 517"));
  EXPECT_EQ(journey.bus.Find("o")->State().serial, "002");
}

TEST(FirmwareJourney, LocksTreeAndMenuOnEveryWayThroughARun) {
  const struct {
    const char* name;
    std::function<void(Journey&)> prepare;
    bool sends = true;
  } ways[]{
      {"success", [](Journey& journey) { journey.ExpectSuccess(); }},
      {"abort", [](Journey& journey) { journey.DuringTheRun([&] { journey.Click("Abort"); }); }},
      {"vanishes",
       [](Journey& journey) {
         journey.bus.ProvokeFault("f", {.kind = sim::FaultKind::kVanish, .command = 0, .nth = 2});
         journey.fixture.prompts.ExpectMessage("Flash update failed!", "Flash Update Fail",
                                               Icon::kExclamation);
       }},
      {"file for another product",
       [](Journey& journey) {
         journey.Select(": 009");
         journey.fixture.prompts.ExpectMessage(
             "An invalid or incompatible file is currently loaded\r\n"
             "and cannot be used with the current device\r\n\r\n",
             "Invalid KVX File!", Icon::kExclamation);
       },
       false},
  };
  for (const auto& way : ways) {
    SCOPED_TRACE(way.name);
    Journey journey(std::string(kFlashBoard) +
                    R"(, {"id": "g", "product": "0x1000", "serial": "009", "firmware": "2.71",
                          "mode": "flash"})");
    journey.Load();
    const auto before = journey.EnabledMenu();
    ASSERT_TRUE(before.contains("&Exit"));
    int looked = 0;
    const auto look = [&] {
      ++looked;
      EXPECT_FALSE(journey.fixture.window.Tree().isEnabled());
      EXPECT_EQ(journey.EnabledMenu(), QStringList());
      journey.fixture.ReportArrival();
    };
    if (way.sends) {
      journey.library.BeforeWrite({.nth = 1, .command = 8}, look);
    } else {
      journey.fixture.prompts.WhileOpen(look);
    }
    way.prepare(journey);
    journey.Click("Program");
    EXPECT_EQ(looked, 1);
    EXPECT_TRUE(way.sends || journey.Press("Device").isEnabled()) << "nothing became of the board";
    EXPECT_TRUE(journey.fixture.window.Tree().isEnabled());
    EXPECT_EQ(journey.EnabledMenu(), before);
    EXPECT_EQ(journey.fixture.settled, 0) << "a notification waits for the end of the run";
    journey.fixture.RunEvents();
    EXPECT_EQ(journey.fixture.settled, 1);
  }
}

TEST(FirmwareJourney, ClosesTheWindowOnceTheRunIsAborted) {
  Journey journey(kFlashBoard);
  journey.fixture.window.show();
  journey.Load();
  journey.DuringTheRun([&] { EXPECT_FALSE(journey.fixture.window.close()); });
  journey.Click("Program");
  EXPECT_THAT(journey.Log(), ::testing::EndsWith("Aborted!\nFlash Update Aborted!\n"));
  EXPECT_TRUE(journey.fixture.window.isVisible());
  journey.fixture.ReportArrival();
  journey.fixture.RunEvents();
  EXPECT_FALSE(journey.fixture.window.isVisible());
  EXPECT_EQ(journey.fixture.settled, 0) << "no new list for a window that closes";
}

}  // namespace quillon::testing
