// SPDX-License-Identifier: MIT
#include <QDragEnterEvent>
#include <QMimeData>
#include <QUrl>

#include "pages/common/DeviceConfigFixture.h"

namespace quillon::testing {
namespace {

using Icon = UserPrompts::Icon;

constexpr const char* kNotLoaded =
    "This is an invalid or incompatible file and will not be loaded.\r\n\r\n";
constexpr const char* kUnloaded = "Refresh Device serial Set Reboot Load...";
constexpr const char* kFileLoaded = "Refresh Device serial Set Reboot Program Load...";

// A file of these bytes with so many empty records behind them.
Bytes WithEmptyRecords(Bytes file, int records) {
  for (int i = 0; i < records; ++i) file.insert(file.end(), {0, 0, 0, 0});
  return file;
}

// Whether the page takes what is dragged over it, and then drops it.
bool Drop(CDeviceConfigPage& page, const QList<QUrl>& urls) {
  QMimeData data;
  data.setUrls(urls);
  QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  enter.ignore();
  QCoreApplication::sendEvent(&page, &enter);
  QDropEvent drop({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  drop.ignore();
  QCoreApplication::sendEvent(&page, &drop);
  QCoreApplication::processEvents();
  EXPECT_EQ(enter.isAccepted(), drop.isAccepted());
  return drop.isAccepted();
}

}  // namespace

TEST(DeviceConfigPage, LoadsAFileAndSaysWhatItHolds) {
  const std::pair<Bytes, const char*> cases[]{
      {{0x10, 0x09}, "0 records, 0 bytes"},
      {{0x10, 0x09, 0, 3, 1, 0, 1, 2, 3, 1, 0xFF, 0xFF}, "1 record, 3 bytes"},
      {{0x10, 0x09, 0, 1, 0, 0, 7, 0, 2, 0, 0, 7}, "1 record, 1 byte; the file's end is cut off"},
      {WithEmptyRecords({0x10, 0x09}, 2046), "2,046 records, 0 bytes"},
  };
  for (const auto& [bytes, loaded] : cases) {
    SCOPED_TRACE(loaded);
    DeviceConfigFixture fixture(kInFlashMode);
    EXPECT_EQ(fixture.Loaded(), "No file is loaded.");
    EXPECT_EQ(fixture.Enabled(), kUnloaded);
    fixture.Load(WriteFile(u"a %1\u202E\u202Eb.kvx"_qs, bytes));
    EXPECT_EQ(fixture.Loaded(), loaded);
    EXPECT_EQ(fixture.Log(), "File : a %1\uFFFDb.kvx loaded.");
    EXPECT_EQ(fixture.Enabled(), kFileLoaded);
    QStringList labels;
    for (const auto* const label : fixture.page.findChildren<QLabel*>()) labels << label->text();
    EXPECT_TRUE(
        labels.contains("File : " + QDir::toNativeSeparators(PathOf(u"a %1\uFFFDb.kvx"_qs))));
  }
}

TEST(DeviceConfigPage, RefusesFilesWithTheNumberFound) {
  const struct {
    const char* product;
    Bytes bytes;
    const char* found;
  } cases[]{
      {"0x0910", {0x20, 0x09, 0}, "Current Device ID :  910\r\nDevice ID found in %1.kvx : 920"},
      {"0x0910", {}, "Bytes found in %1.kvx : 0 (at least 2)"},
      {"0x0910", {0x10}, "Bytes found in %1.kvx : 1 (at least 2)"},
      {"0x0910",
       {0x10, 0x09, 0, 0, 0, 0, 0, 60, 0, 0},
       "Data bytes found in record 2 of %1.kvx : 60 (at most 59)"},
      {"0x0910", WithEmptyRecords({0x10, 0x09}, 2047),
       "Records found in %1.kvx : 2047 or more (at most 2046)"},
      {"0x0800", {0x00, 0x08, 0}, "Bytes found in %1.kvx : 3 (at least 4)"},
      {"0x0800", {0x00, 0x08, 0x30, 0x01}, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.found);
    DeviceConfigFixture fixture("\"product\": \"" + std::string(c.product) +
                                R"(", "firmware": "0.10", "mode": "flash")");
    const std::string log = fixture.Log();
    fixture.fixture.prompts.ExpectOpenFile(WriteFile("%1.kvx", c.bytes));
    fixture.fixture.prompts.ExpectMessage(
        *c.found != 0 ? std::string(kNotLoaded) + c.found
                      : "This is a node update file and will not be loaded.\r\n"
                        "Please load core update file.",
        "Invalid KVX File!", Icon::kExclamation);
    fixture.Click("Load...");
    EXPECT_EQ(fixture.Enabled(), kUnloaded);
    EXPECT_EQ(fixture.Log(), log);
  }
}

TEST(DeviceConfigPage, TakesACoreFileForANodeSystem) {
  DeviceConfigFixture fixture(R"("product": "0x0800", "firmware": "1.00", "mode": "flash")",
                              BoardFamily::kNodeSystem);
  fixture.Load(WriteFile("core.kvx", {0x00, 0x08, 0, 0, 0, 2, 0, 0, 1, 0x10, 1}));
  EXPECT_EQ(fixture.Loaded(), "1 record, 2 bytes");
}

TEST(DeviceConfigPage, UnloadsTheFileBeforeItAsksForAnother) {
  DeviceConfigFixture fixture(kInFlashMode);
  const QString good = WriteFile("good.kvx", Firmware(1));
  fixture.Load(good);
  fixture.fixture.prompts.ExpectOpenFile(std::nullopt);
  fixture.fixture.prompts.WhileOpen([&] { EXPECT_EQ(fixture.Enabled(), kUnloaded); });
  fixture.Click("Load...");
  EXPECT_EQ(fixture.Enabled(), kUnloaded);
  EXPECT_EQ(fixture.Loaded(), "No file is loaded.");
  EXPECT_EQ(fixture.Log(), "File : good.kvx loaded.");

  fixture.Load(good);
  for (const QString& name : {QString("missing.kvx"), QString(".")}) {
    const QString path = name == "." ? PathOf("") : PathOf(name);
    fixture.fixture.prompts.ExpectOpenFile(path);
    fixture.fixture.prompts.ExpectMessage(name == "." ? "Cannot open " : "Cannot open missing.kvx",
                                          "File Load Error", Icon::kExclamation);
    fixture.Click("Load...");
    EXPECT_EQ(fixture.Enabled(), kUnloaded);
  }

  const auto hold = fixture.fixture.link.gate.Enter();
  fixture.Click("Load...");
}

TEST(DeviceConfigPage, TakesOneDroppedFileWhileLoadIsEnabled) {
  const QUrl kvx = QUrl::fromLocalFile(WriteFile("dropped.KVX", Firmware(2)));
  DeviceConfigFixture fixture(kInFlashMode);
  EXPECT_FALSE(Drop(fixture.page, {kvx, kvx}));
  EXPECT_FALSE(Drop(fixture.page, {QUrl::fromLocalFile(PathOf("dropped.txt"))}));
  EXPECT_FALSE(Drop(fixture.page, {QUrl("http://localhost/dropped.kvx")}));
  {
    const auto hold = fixture.fixture.link.gate.Enter();
    EXPECT_FALSE(Drop(fixture.page, {kvx}));
  }
  EXPECT_EQ(fixture.Enabled(), kUnloaded);
  EXPECT_TRUE(Drop(fixture.page, {kvx}));
  EXPECT_EQ(fixture.Enabled(), kFileLoaded);
  EXPECT_EQ(fixture.Log(), "File : dropped.KVX loaded.");

  fixture.fixture.prompts.ExpectMessage("Cannot open gone\uFFFD.kvx", "File Load Error",
                                        Icon::kExclamation);
  EXPECT_TRUE(Drop(fixture.page, {QUrl::fromLocalFile(PathOf(u"gone\n\u3164.kvx"_qs))}));
  EXPECT_EQ(fixture.Enabled(), kUnloaded);

  DeviceConfigFixture device_mode(R"("product": "0x0910", "firmware": "2.82")");
  EXPECT_FALSE(Drop(device_mode.page, {kvx}));
}

TEST(DeviceConfigPage, SetsTheSerialNumber) {
  DeviceConfigFixture fixture(R"("product": "0x0910", "firmware": "2.82", "serial": "001")");
  auto& serial = fixture.Serial();
  const auto set = [&](const QString& text) {
    serial.clear();
    serial.insert(text);
    fixture.Click("Set");
  };
  EXPECT_EQ(serial.text(), "001");
  for (const char* const text : {"", "12", "4x6"}) {
    fixture.fixture.prompts.ExpectMessage("Please enter a valid 3 digit serial number.",
                                          "Invalid Serial Number", Icon::kExclamation);
    set(text);
  }
  EXPECT_EQ(serial.text(), "") << "letters are not taken";
  EXPECT_FALSE(fixture.Board().next_serial) << "nothing was sent";

  fixture.fixture.prompts.ExpectMessage(
      "New device serial number successfully set.\r\n\r\nClick on the REBOOT button to "
      "initialise\r\ndevice with new serial number.",
      "Serial Number", Icon::kInformation);
  set("427");
  EXPECT_EQ(fixture.Board().next_serial, "427");

  fixture.library.AnswerWithEcho({.command = 7}, 6);
  fixture.fixture.prompts.ExpectMessage("Set serial command failed!", "Command Failed",
                                        Icon::kExclamation);
  set("428");
}

TEST(DeviceConfigPage, RestartsTheBoardInTheModeOfTheButton) {
  DeviceConfigFixture fixture(R"("product": "0x0910", "firmware": "2.82")");
  EXPECT_EQ(fixture.Enabled(), "Refresh Flash serial Set Reboot");
  // A command that is not sent fails the test.
  const auto expect_command = [&](std::uint8_t command) {
    fixture.library.BeforeWrite({.command = command}, [] {});
  };
  const auto click = [&](const QString& button, std::uint8_t command, bool flash_mode) {
    SCOPED_TRACE(button.toStdString());
    expect_command(command);
    fixture.Click(button);
    EXPECT_FALSE(fixture.library.DropUnstruck());
    EXPECT_EQ(fixture.Board().flash_mode, flash_mode);
    fixture.Detect();
  };
  click("Reboot", 9, false);
  click("Flash", 0xFF, true);
  EXPECT_EQ(fixture.Enabled(), kUnloaded);
  click("Reboot", 9, true);
  click("Device", 0xFF, false);
  const auto hold = fixture.fixture.link.gate.Enter();
  fixture.Click("Flash");
  EXPECT_FALSE(fixture.Board().flash_mode) << "not while something else is under way";
}

TEST(DeviceConfigPage, OffersNothingButRefreshWithoutBoards) {
  DeviceConfigFixture fixture(kInFlashMode);
  fixture.Load(WriteFile("a.kvx", Firmware(1)));
  fixture.bus.Unplug("b");
  fixture.Detect();
  EXPECT_EQ(fixture.Enabled(), "Refresh");
  EXPECT_EQ(fixture.Serial().text(), "");
  fixture.bus.Plug("b");
  fixture.Detect();
  EXPECT_EQ(fixture.Enabled(), kFileLoaded) << "the file is still there";
}

}  // namespace quillon::testing
