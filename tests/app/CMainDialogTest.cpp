// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QAccessible>
#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSettings>
#include <QTest>

#include "app/CHomePage.h"
#include "app/CMainDialog.h"
#include "app/MainFixture.h"
#include "devlink/NoLibrary.h"
#include "pages/common/CSettingsPage.h"
#include "testing/link/TranscriptLibrary.h"
#include "testing/pages/PageFixture.h"
#include "widgets/CGridCtrl.h"
#include "widgets/CScrollPane.h"
#include "widgets/CStatusLed.h"

namespace quillon::testing {
namespace {

using Icon = UserPrompts::Icon;

constexpr const char* kNewText =
    "Incompatible device version detected!\r\n\r\nYou must update the Quillon utility in order\r\n"
    "to configure this device! Visit www.quillon-devices.example\r\nfor software updates.";
constexpr const char* kItemQuestion =
    "Are you sure you want to load the\r\ndefault settings for this item?";

constexpr const char* kJoystick = R"({"id": "j", "product": "0x0910", "firmware": "2.82"})";

// Writes a joystick controller's product into the first record, whatever it reports.
struct CountingLibrary : NoLibrary {
  explicit CountingLibrary(std::uint32_t boards) : reported(boards) {}
  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t type) override {
    free[0].product_id = 0x0910;
    count = type == 1 ? 0 : reported;
    return 1;
  }
  std::uint32_t reported;
};

QString ReportOf(const CMainDialog& window) {
  return window.ShownPageSet()->findChild<QPlainTextEdit*>()->toPlainText();
}

QStringList EnabledTabs(const CTabSet& set) {
  QStringList titles;
  for (int i = 0; i < set.count(); ++i) {
    if (set.isTabEnabled(i)) titles << set.tabText(i);
  }
  return titles;
}

// A screen reader gets each cell with its titles and value, and clicks the boxes.
void ExpectReadableCells(CGridCtrl& grid) {
  auto* const cells = QAccessible::queryAccessibleInterface(&grid);
  for (int row = 1; row < grid.Rows(); ++row) {
    for (int column = 1; column < grid.Columns(); ++column) {
      const bool has = grid.IsEnabledCell(row, column);
      const bool box = has && IsToggle(grid.Kind(row, column));
      const auto value = grid.Value(row, column);
      const QString words = box ? (value != 0 ? "on" : "off") : grid.Text(row, column);
      QStringList name{grid.Text(row, 0), grid.Text(0, column).trimmed(),
                       has ? words : "not available"};
      name.removeAll("");
      auto& cell = *cells->child(row * grid.Columns() + column);
      EXPECT_EQ(cell.text(QAccessible::Name).toStdString(), name.join(", ").toStdString());
      EXPECT_EQ(cell.text(QAccessible::Value), has ? words : "");
      EXPECT_EQ(cell.state().disabled, !has);
      EXPECT_EQ(cell.state().checked, box && value != 0);
      cell.actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
      EXPECT_EQ(grid.Value(row, column) != value, box);
    }
  }
}

// Each stop of Tab has a name of its own and stands right of the former or below it; texts are
// read.
void ExpectReadable(const QWidget& window) {
  std::set<std::string> names;
  QRect former;
  for (auto* stop = window.nextInFocusChain(); stop != &window; stop = stop->nextInFocusChain()) {
    if (!(stop->focusPolicy() & Qt::TabFocus) || stop->focusProxy() != nullptr) continue;
    if (!stop->isVisible() || !stop->isEnabled()) continue;
    auto* read = QAccessible::queryAccessibleInterface(stop);
    // Unix gives a list the name of its label; its own is what was chosen.
    if (read->role() == QAccessible::ComboBox) read = read->relations()[0].first;
    const std::string name = read->text(QAccessible::Name).toStdString();
    EXPECT_TRUE(name != "" && names.insert(name).second) << name;
    const QRect place(stop->mapToGlobal(QPoint()), stop->size());
    EXPECT_TRUE(place.left() > former.right() || place.top() > former.bottom()) << name;
    former = place;
  }
  for (auto* const label : window.findChildren<QLabel*>()) {
    if (label->text().isEmpty()) continue;
    EXPECT_EQ(QAccessible::queryAccessibleInterface(label)->text(QAccessible::Name), label->text());
  }
}

}  // namespace

TEST(MainDialog, DetectsFirmwareThenLoadersThenTheRest) {
  TranscriptLibrary library(R"(
    close 0 -> 1
    detect 2 -> 1 boards 1
    board pid 0910 version 0282 product "Stick" maker "M" serial "001"
    detect 1 -> 1 boards 1
    board pid 0920 version 0100 product "Loader" maker "M" serial "002"
    write 1 -> 0 : 00 00 00 00 06 *
    read 1 -> 0 : 06 01 20 01 *
    detect 3 -> 0
  )");
  MainFixture fixture(library);
  const auto root = [&](int row) { return fixture.window.Tree().model()->index(row, 0); };
  const auto only_child = [&](int row) {
    return fixture.window.Tree().model()->index(0, 0, root(row)).data().toString();
  };
  fixture.on_settle = [&] {
    EXPECT_EQ(only_child(0), "Non Detected");
    EXPECT_EQ(fixture.window.ShownPageSet(), nullptr);
  };
  fixture.window.Initialise();
  EXPECT_EQ(fixture.settled, 1);
  EXPECT_EQ(only_child(0), "Loader : 002");
  EXPECT_EQ(only_child(1), "Stick : 001");
  EXPECT_EQ(fixture.link.table.Record(1).queried_version, 0x0120);
  ASSERT_NE(fixture.window.ShownPageSet(), nullptr);
  EXPECT_THAT(ReportOf(fixture.window).toStdString(), ::testing::HasSubstr("Device : Stick"));
  EXPECT_EQ(EnabledTabs(*fixture.window.ShownPageSet()).first(2),
            QStringList({"Device Configuration", "Analog Channels"}));
}

TEST(MainDialog, PaintsTheEmptiedTreeBeforeItWaits) {
  SimMain main(kJoystick);
  auto& window = main.fixture.window;
  const auto is_seen = [&] {
    const QImage screen = window.screen()->grabWindow(window.winId()).toImage();
    return screen == window.grab().toImage().convertToFormat(screen.format());
  };
  window.show();
  while (main.fixture.settled == 0 || !is_seen()) main.fixture.RunEvents();
  main.fixture.on_settle = [&] { EXPECT_TRUE(is_seen()); };
  window.Redetect();
  EXPECT_EQ(main.fixture.settled, 2);
}

TEST(MainDialog, SaysThatClosingFailedAndDetectsNothingMoreOnceItIsClosed) {
  TranscriptLibrary library(R"(
    close 0 -> 0
    detect 2 -> 0
    detect 1 -> 0
    detect 3 -> 0
    close 0 -> 0
  )");
  MainFixture fixture(library);
  const auto expect_failure = [&] {
    fixture.prompts.ExpectMessage("An error occured while attempting to close device!",
                                  "Close Device Failed", Icon::kExclamation);
  };
  expect_failure();
  fixture.window.Initialise();
  EXPECT_EQ(fixture.window.ShownPageSet(), nullptr) << "no boards: the home page";
  expect_failure();
  fixture.prompts.WhileOpen([&] { fixture.ReportArrival(); });
  EXPECT_TRUE(fixture.window.close());
  fixture.ReportArrival();
  fixture.RunEvents();
  EXPECT_EQ(fixture.settled, 1);
}

TEST(MainDialog, FitsItsScreenAndKeepsTheFocusWhereItWasPressed) {
  SimMain main(kJoystick);
  auto& window = main.fixture.window;
  window.show();
  window.Initialise();
  const QSize room = window.screen()->availableSize().expandedTo(window.minimumSizeHint());
  EXPECT_LE(window.width(), room.width());
  EXPECT_LE(window.height(), room.height());
  ASSERT_NE(window.ShownPageSet(), nullptr);
  QPushButton& refresh = main.Press("Refresh");
  refresh.setFocus();
  refresh.click();
  EXPECT_EQ(window.focusWidget(), &refresh);
  // What had the focus is on a page that is not shown again.
  main.bus.Unplug("j");
  window.Redetect();
  EXPECT_EQ(window.focusWidget(), &window.Tree());
  EXPECT_EQ(window.ShownPageSet(), nullptr);
}

TEST(MainDialog, ShowsAllOfEveryPageInASmallWindow) {
  constexpr QSize kSmall(640, 420);
  constexpr const char* kKinds[]{"QPushButton",        "QCheckBox",     "QComboBox",
                                 "QAbstractSpinBox",   "QLabel",        "quillon::CStatusLed",
                                 "quillon::CGridCtrl", "QPlainTextEdit"};
  for (const std::string product : {"", "0910", "0920", "0710", "0520", "0800", "1500"}) {
    SCOPED_TRACE(product);
    const std::string board = R"({"id": "b", "firmware": "1.00", "product": "0x)" + product + "\"}";
    SimMain main(product.empty() ? "" : board);
    auto& window = main.fixture.window;
    window.resize(kSmall);
    window.show();
    window.Initialise();
    QTabWidget* const set =
        product.empty() ? window.findChild<QTabWidget*>("home") : window.ShownPageSet();
    for (int tab = 0; tab < set->count(); ++tab) {
      set->setTabEnabled(tab, true);
      set->setCurrentIndex(tab);
      window.activateWindow();
      MainFixture::RunEvents();
      EXPECT_EQ(window.size(), kSmall);
      EXPECT_GE(window.Tree().width(), window.Tree().fontMetrics().averageCharWidth() * 32);
      for (auto* const part : set->findChildren<QWidget*>()) {
        const auto is = [part](const char* kind) { return part->inherits(kind); };
        if (!part->isVisible() || std::none_of(std::begin(kKinds), std::end(kKinds), is)) continue;
        if (part->isEnabled()) part->setFocus(Qt::TabFocusReason);  // scrolls to it by itself
        if (!part->isEnabled()) CScrollPane::BringIntoView(*part, part->rect());
        const std::string name = (set->tabText(tab) + ": " + part->accessibleName()).toStdString();
        EXPECT_EQ(part->visibleRegion().boundingRect(), part->rect()) << name;
        EXPECT_EQ(part->size().expandedTo(part->minimumSizeHint()), part->size()) << name;
      }
    }
  }
}

TEST(MainDialog, ShowsThePagesOfTheFamilyForScreenReadersToo) {
  const std::pair<const char*, const char*> cases[]{
      // The last tab tells the families apart.
      {R"("product": "0x0910", "firmware": "2.83")", "Expansion Port"},
      {R"("product": "0x1000", "firmware": "2.82")", "Expansion Port"},
      {R"("product": "0x0920", "firmware": "1.10")", "HAT Channels"},
      {R"("product": "0x0710", "firmware": "1.20")", "Expansion Port"},
      {R"("product": "0x0510", "firmware": "2.20")", "Digital Ports"},
      {R"("product": "0x0520", "firmware": "1.00")", "Digital Ports"},
      {R"("product": "0x0800", "firmware": "1.10")", "I/O Ports"},
      {R"("product": "0x0800", "firmware": "1.10", "mode": "flash",
          "nodes": [{"node": 1, "flash": "1.30"}])",
       "I/O Ports"},
      {R"("product": "0x1500", "firmware": "1.10")", "SPI Configuration"},
  };
  for (const auto& [board, last_tab] : cases) {
    SCOPED_TRACE(board);
    SimMain main(R"({"id": "b", )" + std::string(board) + "}");
    main.fixture.window.Initialise();
    auto* const set = qobject_cast<CPageSet*>(main.fixture.window.ShownPageSet());
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(set->tabText(set->count() - 1), last_tab);
    set->EnablePages(std::string_view(board).find("flash\",") != std::string_view::npos, true);
    main.fixture.window.resize(2000, 900);  // has room for all tabs
    main.fixture.window.show();
    for (int tab = 0; tab < set->count(); ++tab) {
      if (!set->isTabEnabled(tab)) continue;
      set->setCurrentIndex(tab);
      MainFixture::RunEvents();
      ExpectReadable(main.fixture.window);
      for (auto* const grid : set->widget(tab)->findChildren<CGridCtrl*>())
        ExpectReadableCells(*grid);
    }
  }
}

TEST(MainDialog, AsksForWhatIsPressedOnTheHomePageByItsLetterOrCaption) {
  NoLibrary library;
  MainFixture fixture(library);
  fixture.window.show();
  MainFixture::RunEvents();
  ExpectReadable(fixture.window);
  fixture.web.opens_documents = true;
  for (int press = 0; press < 2; ++press) {
    fixture.prompts.ExpectMessage("Unable to check for updates.", "Version Check",
                                  Icon::kInformation);
  }
  auto* const home = fixture.window.findChild<CHomePage*>();
  std::string asked;
  home->connect(home, &CHomePage::RefreshRequested, [&] { asked += 'R'; });
  home->connect(home, &CHomePage::UpdatesRequested, [&] { asked += 'U'; });
  home->connect(home, &CHomePage::HelpRequested, [&] { asked += 'H'; });
  home->connect(home, &CHomePage::WebSiteRequested, [&] { asked += 'W'; });
  for (const auto* const button : home->findChildren<QPushButton*>()) {
    const std::size_t before = asked.size();
    QTest::keyClick(&fixture.window, button->shortcut()[0].key(), Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return asked.size() > before; }, 2000)) << asked;
    for (auto* const label : home->findChildren<QLabel*>()) {
      if (label->text() == button->accessibleName()) QTest::mouseClick(label, Qt::LeftButton);
    }
  }
  EXPECT_EQ(asked, "RRUUHHWW");
}

TEST(MainDialog, ConfiguresOnlyTheFirmwareReleaseThatItKnows) {
  SimMain main(std::string(kJoystick) +
               R"(, {"id": "old", "product": "0x0910", "serial": "002", "firmware": "2.70"},
                    {"id": "new", "product": "0x0910", "serial": "003", "firmware": "2.90"},
                    {"id": "f", "product": "0x0910", "serial": "004", "mode": "flash",
                     "firmware": "2.82"})");
  main.fixture.window.Initialise();
  const CTabSet* const set = main.fixture.window.ShownPageSet();
  EXPECT_TRUE(set->isTabEnabled(1));
  main.Select(": 002");
  EXPECT_EQ(EnabledTabs(*set), QStringList("Device Configuration"));
  EXPECT_THAT(ReportOf(main.fixture.window).toStdString(),
              ::testing::HasSubstr("WARNING: Firmware update required!"));
  main.fixture.prompts.ExpectMessage(kNewText, "Incompatible Version Detected", Icon::kExclamation);
  main.Select(": 003");
  EXPECT_EQ(EnabledTabs(*set), QStringList("Device Configuration"));
  main.Select(": 004");
  EXPECT_EQ(EnabledTabs(*set), QStringList("Device Configuration"));
  main.Select(": 001");
  EXPECT_TRUE(set->isTabEnabled(1));
  EXPECT_EQ(set->currentIndex(), 0);
}

TEST(MainDialog, DetectsAnewForEveryEventOfOurBoardsOnceTheGateIsOpen) {
  SimMain main(kJoystick);
  auto& fixture = main.fixture;
  fixture.window.Initialise();
  fixture.settled = 0;
  fixture.notifier.Report(KVUSB_EVENT_ARRIVAL, KVUSB_DEVICE_INTERFACE, R"(\\?\HID#VID_1234)");
  fixture.notifier.Report(7, KVUSB_DEVICE_INTERFACE, R"(\\?\HID#VID_4C7E)");
  fixture.RunEvents();
  EXPECT_EQ(fixture.settled, 0);
  fixture.ReportArrival();
  fixture.ReportArrival();
  fixture.RunEvents();
  EXPECT_EQ(fixture.settled, 1) << "it starts after both";
  {
    const auto hold = fixture.link.gate.Enter();
    fixture.ReportArrival();
    fixture.ReportArrival();
    fixture.window.Redetect();
    fixture.RunEvents();
    EXPECT_EQ(fixture.settled, 1) << "not while something is under way";
  }
  fixture.RunEvents();
  EXPECT_EQ(fixture.settled, 2) << "those held back, once";
}

TEST(MainDialog, DarkensTheLampsWithADetection) {
  SimMain main(kJoystick);
  main.fixture.window.Initialise();
  CSettingsPage& page = *main.fixture.window.ShownPageSet()->Page(1);
  main.library.FailRead({});
  page.Retrieve();
  EXPECT_TRUE(Lamp(page, "Error").IsBlinking());
  main.fixture.window.Redetect();
  EXPECT_FALSE(Lamp(page, "Error").IsLit() || Lamp(page, "Error").IsBlinking());
}

TEST(MainDialog, LoadsDeviceDefaultsIntoTheBoardThatWasConfirmed) {
  SimMain main(std::string(kJoystick) + R"(, {"id": "k", "product": "0x0910", "serial": "007",
                                             "firmware": "2.82"})");
  auto& fixture = main.fixture;
  auto& tree = fixture.window.Tree();
  fixture.window.Initialise();
  main.Select(": 007");
  for (const char* const board : {"j", "k"}) main.bus.Find(board)->Block("analog_a")[0] = 0;
  const auto other = main.bus.Find("j")->State().blocks;
  auto& blocks = main.bus.Find("k")->State().blocks;
  const auto before = blocks;

  fixture.prompts.ExpectQuestion(kItemQuestion, "Load Defaults", false);
  tree.collapseAll();
  tree.Run(DeviceTool::kLoadDefaults);
  EXPECT_EQ(blocks, before);
  EXPECT_TRUE(tree.isExpanded(tree.model()->index(1, 0))) << "built anew";
  fixture.prompts.ExpectQuestion(kItemQuestion, "Load Defaults", true);
  fixture.prompts.WhileOpen([&] {
    // A board comes while the question is open; were it detected now, board 0 would be current.
    fixture.ReportArrival();
    fixture.RunEvents();
  });
  tree.Run(DeviceTool::kLoadDefaults);

  auto analog = blocks["analog_a"];
  analog.resize(6);
  EXPECT_THAT(analog, ::testing::ElementsAre(0x51, 0x0B, 0x01, 0x51, 0x0B, 0x02));
  EXPECT_EQ(main.bus.Find("j")->State().blocks, other);
  EXPECT_EQ(fixture.link.table.Current(), 1U) << "the current board stays current";
  fixture.settled = 0;
  fixture.RunEvents();
  EXPECT_EQ(fixture.settled, 1) << "now the event that waited";
}

TEST(MainDialog, ListsWhatFitsOfMoreBoardsThanItHasRoomFor) {
  CountingLibrary library(0xFFFFFFFF);
  MainFixture fixture(library);
  fixture.window.Initialise();
  EXPECT_EQ(fixture.link.table.Count(), DeviceTable::kRoom);
  bool said = false;
  for (const auto* const label : fixture.window.centralWidget()->findChildren<QLabel*>()) {
    said = said || label->text() ==
                       "The HID library reports 8589934590 boards, but Quillon lists 1024 at "
                       "most. The others are not shown.";
  }
  EXPECT_TRUE(said);
}

TEST(MainDialog, TakesNoBoardFromARecordThatIsNotListed) {
  CountingLibrary library(0);
  MainFixture fixture(library);
  fixture.window.Initialise();
  EXPECT_EQ(fixture.window.ShownPageSet(), nullptr);
  fixture.prompts.ExpectQuestion(kItemQuestion, "Load Defaults", true);
  fixture.window.Tree().Run(DeviceTool::kLoadDefaults);
}

TEST(MainDialog, IsNotWidenedByTheProblemThatItShows) {
  NoLibrary none;
  MainFixture calm(none);
  calm.window.Initialise();
  NoLibrary wordy(std::string(900, 'W'));
  MainFixture fixture(wordy);
  fixture.window.Initialise();
  EXPECT_EQ(fixture.window.minimumSizeHint().width(), calm.window.minimumSizeHint().width());
}

TEST(MainDialog, SendsNothingToProductsWithoutPagesAndNoDefaultsToAFamilysSecondOne) {
  for (const std::string product : {"1600", "4242", "1000"}) {
    SCOPED_TRACE(product);
    // Only what detects the board: an exchange would be a call too many.
    TranscriptLibrary library(OneBoard(product));
    MainFixture fixture(library);
    fixture.window.Initialise();
    EXPECT_EQ(fixture.window.ShownPageSet() != nullptr, product == "1000");
    const auto* const home = fixture.window.findChild<QTabWidget*>("home");
    ASSERT_NE(home, nullptr);
    EXPECT_EQ(home->isVisibleTo(&fixture.window), product == "4242") << "an unknown one";
    fixture.prompts.ExpectQuestion(kItemQuestion, "Load Defaults", true);
    fixture.window.Tree().Run(DeviceTool::kLoadDefaults);
    if (product == "1000") continue;
    fixture.window.Tree().Run(DeviceTool::kRestartFlash);
    fixture.window.Tree().Run(DeviceTool::kRestartDevice);
  }
}

TEST(MainDialog, ReadsTheOptionsUnlessTheRegistrationFailed) {
  QSettings("Quillon", "Quillon").setValue("Options/Auto Connect", 0);
  Profile().SetAutoUpdate(5);
  for (const bool registers : {true, false}) {
    NoLibrary library;
    MainFixture fixture(library);
    fixture.notifier.registers = registers;
    fixture.window.Initialise();
    EXPECT_TRUE(fixture.notifier.IsStarted());
    EXPECT_EQ(fixture.window.Options(), registers ? StartOptions({0, 5}) : StartOptions());
    fixture.window.Initialise();
    EXPECT_EQ(fixture.settled, 1) << "started once";
  }
}

TEST(MainDialog, DoesNotCloseWhileSomethingIsUnderWayNorStartOnceItIsClosed) {
  NoLibrary library;
  MainFixture fixture(library);
  {
    const auto hold = fixture.link.gate.Enter();
    EXPECT_FALSE(fixture.window.close());
  }
  EXPECT_TRUE(fixture.window.close());
  fixture.window.Initialise();
  EXPECT_FALSE(fixture.notifier.IsStarted());
}

TEST(MainMenu, HasItsEntriesAndSaysWhyOneIsDisabled) {
  Profile().SetAutoUpdate(5);
  NoLibrary library;
  MainFixture fixture(library);
  QStringList lines;
  QAction* check = nullptr;
  for (const QAction* const menu : fixture.window.menuBar()->actions()) {
    lines << menu->text();
    for (QAction* const entry : menu->menu()->actions()) {
      if (entry->isSeparator()) {
        lines << "-";
        continue;
      }
      lines << QString("%1 %2%3")
                   .arg(entry->data().toInt())
                   .arg(entry->text(), entry->isEnabled() ? "" : " *");
      EXPECT_TRUE(entry->isEnabled() || entry->toolTip() != entry->iconText());
      if (entry->data() == 32796) check = entry;
    }
  }
  EXPECT_EQ(lines.join("\n"),
            "&File\n61452 &Load... *\n57603 &Save *\n32782 S&ave as... *\n-\n57665 &Exit\n"
            "&Tools\n32778 &Software version check\n32779 &Firmware version check *\n"
            "Options\n32796 Check for updates on startup\n"
            "&Help\n57667 &Help Topics\n-\n100 &About...");
  ASSERT_NE(check, nullptr);
  EXPECT_TRUE(check->isChecked());
  check->trigger();
  EXPECT_EQ(Profile().AutoUpdate(), 0) << "written at once";
  EXPECT_EQ(fixture.window.Options().auto_update, 0);
  check->trigger();
  EXPECT_EQ(Profile().AutoUpdate(), 5) << "as it was";
}

}  // namespace quillon::testing
