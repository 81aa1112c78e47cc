// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <cstring>

#include "pages/joystick/CExpansionPortPage.h"
#include "testing/pages/TranscriptPage.h"
#include "widgets/CEditMark.h"

namespace quillon::testing {
namespace {

struct Fixture : TranscriptPage<CExpansionPortPage> {
  explicit Fixture(BoardFamily family) : TranscriptPage(*FindPage(family, "expansion")) {}
};

constexpr auto kFull = BoardFamily::kJoystick;
constexpr auto kScanMatrix = BoardFamily::kScanMatrix;

QCheckBox& Active(const QWidget& page) { return *page.findChild<QCheckBox*>(); }
QComboBox& Module(const QWidget& page) { return *page.findChild<QComboBox*>(); }

std::string PortText(const QWidget& page) {
  const bool active = Active(page).isChecked();
  EXPECT_EQ(Lamp(page, "Expansion port").IsLit(), active);
  EXPECT_EQ(Module(page).isEnabled(), active);
  return (active ? "on, " : "off, ") + Module(page).currentText().toStdString();
}

// What the list's tooltip says of a module that it does not show.
std::string Note(const QWidget& page) {
  const QString tip = Module(page).toolTip();
  EXPECT_FALSE(tip.contains(u'\n') && Module(page).findChild<CEditMark*>()->isHidden());
  return tip.left(tip.indexOf(u'\n') + 1).trimmed().toStdString();
}

std::string Retrieved(const char* block) {
  return std::string("write 0 -> 0 : 00 00 00 00 14 *\nread 0 -> 0 : 14 ") + block + " *\n";
}

std::string Stored(const char* block) {
  return std::string("write 0 -> 0 : 00 00 00 00 10 01 ") + block + " *\nread 0 -> 0 : 10 *\n";
}

}  // namespace

TEST(ExpansionPort, ShowsWhatTheBoardHoldsAndSendsBackWhatTheListShows) {
  struct Case {
    const char* name;
    BoardFamily modules;
    const char* before;  // the module shown before the retrieve
    const char* retrieved;
    const char* shown;
    const char* sent;
    const char* holds = nullptr;
    std::string becomes = " Update replaces it by Zephyr Card.";
  };
  const std::string kKept = " It is kept until another value is chosen.";
  const Case cases[]{
      {"first", kFull, "Zephyr Card", "01 01", "on, Lumen Card", "01 01"},
      {"last", kFull, "Zephyr Card", "01 05", "on, Character LCD 20 x 4", "01 05"},
      {"all bits set", kFull, "Zephyr Card", "ff 03", "on, Absolute Tarn Encoders", "01 03"},
      {"off, with a module", kFull, "Zephyr Card", "fe 02", "off, Zephyr Card", "00 04",
       "Absolute SSI Encoders"},
      {"off, with the module shown", kFull, "Zephyr Card", "00 04", "off, Zephyr Card", "00 04"},
      {"off, without a module", kFull, "Zephyr Card", "00 00", "off, Zephyr Card", "00 04",
       "code 0"},
      {"no module", kFull, "Zephyr Card", "01 00", "on, Zephyr Card", "01 00", "code 0", kKept},
      {"a newer module", kFull, "Zephyr Card", "01 06", "on, Zephyr Card", "01 06", "code 6",
       kKept},
      {"no byte is negative", kFull, "Zephyr Card", "01 ff", "on, Zephyr Card", "01 ff", "code 255",
       kKept},
      {"scan matrix", kScanMatrix, "Zephyr Card", "01 01", "on, 8x6 Scan Matrix", "01 01"},
      {"scan matrix, last", kScanMatrix, "8x6 Scan Matrix", "01 02", "on, Zephyr Card", "01 02"},
      {"scan matrix, not its own", kScanMatrix, "Zephyr Card", "01 03", "on, Zephyr Card", "01 03",
       "code 3", kKept}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Fixture fixture(c.modules);
    const auto& page = fixture.page;
    Module(page).setCurrentText(c.before);
    fixture.Press("Retrieve", Retrieved(c.retrieved));
    EXPECT_EQ(PortText(page), c.shown);
    const std::string held = std::string("The board holds ") + (c.holds ? c.holds : "") + ".";
    EXPECT_EQ(Note(page), c.holds ? held + c.becomes : "");
    fixture.Press("Update", Stored(c.sent));
    EXPECT_EQ(Note(page), c.holds && c.becomes == kKept ? held + c.becomes : "");
  }
}

// Serial numbers stand for boards that are alike otherwise.
TEST(ExpansionPort, KnowsTheBoardOfItsValuesAgain) {
  const struct {
    std::vector<const char*> boards;
    std::uint32_t selected;
    bool known;
  } cases[]{{{"1", "1", "2"}, 1, true},  {{"1", "1", "2"}, 0, false},
            {{"1", "1", "2"}, 2, false}, {{"2", "3", "1", "1"}, 3, true},
            {{"1"}, 0, false},           {{}, 0, false}};
  Fixture fixture(kFull);
  DeviceTable& table = fixture.board.link.table;
  const DeviceRecord board = table.CurrentRecord();
  for (const auto& c : cases) {
    table.Clear();
    for (const char* const serial : c.boards) {
      table.Free().front() = board;
      std::strcpy(table.Free().front().serial_number, serial);
      table.Append(1, KVUSB_TYPE_FIRMWARE);
    }
    table.SetCurrent(c.selected);
    if (&c == cases) fixture.Press("Retrieve", Retrieved("01 01"));
    fixture.page.ShowOrigin();
    EXPECT_EQ(OriginOf(fixture.page).contains("not the board selected"), !c.known) << (&c - cases);
  }
}

TEST(ExpansionPort, ForgetsAnUnknownModuleWhenTheUserChooses) {
  Fixture fixture(kFull);
  const auto& page = fixture.page;
  fixture.Press("Retrieve", Retrieved("01 06"));
  Active(page).click();
  Active(page).click();
  fixture.Press("Update", Stored("01 06"));
  EXPECT_EQ(OriginOf(page).indexOf("Edited"), -1);
  // The entry that is shown already.
  Q_EMIT Module(page).activated(0);
  EXPECT_EQ(Note(page), "");
  EXPECT_GT(OriginOf(page).indexOf("Edited"), 0);
  fixture.Press("Update", Stored("01 01"));

  fixture.Press("Retrieve", Retrieved("01 06"));
  Active(page).click();
  fixture.page.LoadDefaults();
  EXPECT_TRUE(Module(page).findChild<CEditMark*>()->isVisibleTo(&Module(page)));
  fixture.Press("Update", Stored("00 01"));
  EXPECT_EQ(PortText(page), "off, Lumen Card");
}

TEST(ExpansionPort, NoSelectionKeepsTheRetrievedModule) {
  Fixture fixture(kFull);
  fixture.Press("Retrieve", Retrieved("01 03"));
  Module(fixture.page).setCurrentIndex(-1);
  fixture.Press("Update", Stored("01 03"));
}

TEST(ExpansionPort, FollowsItsCheckBox) {
  const Fixture fixture(kFull);
  for (const auto& [text, colour] : {std::pair{"off, Lumen Card", QColor(150, 150, 150)},
                                     {"on, Lumen Card", QColor(0, 255, 0)},
                                     {"off, Lumen Card", QColor(150, 150, 150)}}) {
    EXPECT_EQ(PortText(fixture.page), text);
    const QImage lamp = Lamp(fixture.page, "Expansion port").grab().toImage();
    EXPECT_EQ(lamp.pixelColor(lamp.rect().center()), colour);
    Active(fixture.page).click();
  }
}

TEST(ExpansionPort, OnlyTheFullControllerGivesAdviceOnTheDisplay) {
  for (const auto modules : {kFull, kScanMatrix}) {
    const Fixture fixture(modules);
    QStringList titles;
    for (const auto* group : fixture.page.findChildren<QGroupBox*>()) titles << group->title();
    EXPECT_EQ(titles.contains("Character LCD 20 x 4 mode"), modules == kFull);
  }
}

}  // namespace quillon::testing
