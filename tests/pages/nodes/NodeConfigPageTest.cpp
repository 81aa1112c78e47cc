// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QClipboard>
#include <QMouseEvent>
#include <QStyleHints>

#include "pages/nodes/NodeSystemFixture.h"

namespace quillon::testing {
namespace {

using Icon = UserPrompts::Icon;

constexpr int kPage = 1;
constexpr int kRecords = 2;  // a node takes four exchanges: erase, records, finish

constexpr const char* kThreeNodes = R"("nodes": [{"node": 1, "flash": "1.20"},
    {"node": 2, "flash": "1.31"}, {"node": 5, "loader": "1.02", "flash": "none"}])";

const std::string kOld = "[x] Node 1|Active|1.00|1.20|Update Required ffc8c8\n";
const std::string kOk = "[x] Node 2|Active|1.00|1.31|Ok ebebeb\n";
const std::string kEmpty = "[x] Node 5|Active|1.02|N/A|Update Required ffc8c8\n";

// What the rows say once a run has begun.
std::string Old(const std::string& rest) { return "[x] Node 1|Active|1.00|" + rest + "\n"; }
std::string Ok(const std::string& rest) { return "[x] Node 2|Active|1.00|1.31|" + rest + "\n"; }
std::string Empty(const std::string& rest) { return "[x] Node 5|Active|1.02|" + rest + "\n"; }
const std::string kOldLeft = Old("1.20|Update Required| ffc8c8");
const std::string kOldDone = Old("1.31|Update Complete|0:00 c8ffc8");
const std::string kOldAborted = Old("1.20|Update Aborted|0:00 ffc8c8");
const std::string kOkLeft = Ok("Ok| ebebeb");
const std::string kSkipped = Ok("No Update Required!| e1e1e1");
const std::string kOkDone = Ok("Update Complete|0:00 c8ffc8");
const std::string kEmptyLeft = Empty("N/A|Update Required| ffc8c8");
const std::string kEmptyDone = Empty("1.31|Update Complete|0:00 c8ffc8");
const std::string kEmptyAborted = Empty("N/A|Update Aborted|0:00 ffc8c8");

constexpr const char* kIdle = "Refresh Load... tabs";
constexpr const char* kReady = "Refresh Program Load... force tabs";

// A file for nodes with records of so many bytes.
Bytes NodeFirmware(std::uint16_t version, std::uint8_t length = 4, int records = kRecords) {
  Bytes file = {0x00, 0x08, static_cast<std::uint8_t>(version & 0xFF),
                static_cast<std::uint8_t>(version >> 8)};
  for (int i = 0; i < records; ++i) {
    file.insert(file.end(), {0x00, length, 0x00, static_cast<std::uint8_t>(i * 4)});
    file.insert(file.end(), length, 0x77);
  }
  return file;
}

struct UpdateFixture : NodeSystemFixture {
  explicit UpdateFixture(const std::string& fields = kThreeNodes,
                         const std::string& product = "0x0800")
      : NodeSystemFixture(fields, product) {
    Click(kPage, "Refresh");
  }

  // The enabled controls, and the tabs where another one can be chosen.
  std::string Enabled() {
    QStringList words;
    for (auto* const button : Page(kPage).findChildren<QPushButton*>()) {
      if (button->isEnabled() && button->text() != "Copy") words << button->text();
    }
    if (Force().isEnabled()) words << "force";
    const bool tabs[]{pages.isTabEnabled(0), pages.isTabEnabled(2), pages.tabBar()->isEnabled()};
    EXPECT_EQ(tabs[0], tabs[1]);
    EXPECT_EQ(tabs[0], tabs[2]);
    if (tabs[0]) words << "tabs";
    return words.join(' ').toStdString();
  }
  QCheckBox& Force() { return *Page(kPage).findChild<QCheckBox*>(); }
  std::string Line() {
    return Named<QLabel>(Page(kPage), "What became of the nodes").text().toStdString();
  }
  std::string Shown() { return Rows(kPage, {0, 1, 4}); }

  void Load(const QString& chosen = {}) {
    fixture.prompts.ExpectOpenFile(WriteFile("new.kvx", NodeFirmware(0x0131)), chosen);
    Click(kPage, "Load...");
  }
  void Program() {
    const int runs = ended;
    Click(kPage, "Program");
    EXPECT_EQ(begun, runs + 1);
    EXPECT_EQ(ended, runs + 1);
  }
  // Runs an event that comes during this exchange of the run, counted from 1. It is handled after
  // the next record.
  void DuringExchange(int exchange, const std::function<void()>& event) {
    library.BeforeWrite({.nth = exchange, .command = 0x1C}, [this, event] {
      QMetaObject::invokeMethod(&pages, event, Qt::QueuedConnection);
    });
  }

  // All nodes can be programmed whatever became of the first run.
  void ExpectSecondRunSucceeds() {
    now += std::chrono::seconds(5);
    Load(PathOf("new.kvx"));
    EXPECT_EQ(Enabled(), kReady);
    Force().setChecked(true);
    Program();
    EXPECT_EQ(Shown(), kOldDone + kOkDone + kEmptyDone);
    EXPECT_EQ(Enabled(), kIdle);
    for (const std::size_t node : {0U, 1U, 4U}) EXPECT_EQ(FlashOf(node), 0x0131) << node;
  }
};

}  // namespace

TEST(NodeConfigPage, ListsTheNodesOfTheBoardOnlyWhenItAnswers) {
  UpdateFixture nodes;
  EXPECT_EQ(nodes.Rows(kPage, {0, 1, 2, 4}), kOld + kOk + "[ ] Node 3|N/A||| e1e1e1\n" + kEmpty);
  nodes.bus.ProvokeFault("b", {.kind = sim::FaultKind::kWrongEcho, .command = 0x1D, .value = 3});
  nodes.List(kPage).Click(1, 1);
  const std::string before = nodes.Shown();
  EXPECT_EQ(before.substr(0, 3), "[ ]");
  nodes.Click(kPage, "Refresh");
  EXPECT_EQ(nodes.Shown(), before);
  EXPECT_EQ(nodes.Line(), "The board did not answer. The list is as it was before.");
  nodes.Click(kPage, "Refresh");
  EXPECT_EQ(nodes.Shown(), kOld + kOk + kEmpty);

  SetOnlineNodeVersion(0x0132);
  nodes.Click(kPage, "Refresh");
  EXPECT_EQ(nodes.Rows(kPage, {1}), "[x] Node 2|Active|1.00|1.31|Update Available Online ebebeb\n");
  SetOnlineNodeVersion(NodeRecord::kNoVersion);
}

TEST(NodeConfigPage, RefusesFilesInTheOrderOfTheirFaults) {
  const std::string invalid =
      "This is an invalid or incompatible file and will not be loaded.\r\n\r\n";
  const std::string outdated =
      "This node update file is not compatible with this\r\nversion of Quillon.\r\n\r\n"
      "Please load a valid node update file.";
  Bytes of_other_board = NodeFirmware(0, 60);
  of_other_board[1] = 0x12;
  const struct {
    Bytes bytes;
    std::string text;
    const char* caption = "Invalid KVX File!";
  } cases[]{
      {{0x00}, invalid + "Bytes found in x.kvx : 1 (at least 4)"},
      {{0x00, 0x12}, invalid + "Current Device ID :  800\r\nDevice ID found in x.kvx : 1200"},
      {of_other_board, invalid + "Current Device ID :  800\r\nDevice ID found in x.kvx : 1200"},
      {NodeFirmware(0, 60),
       "This is a flash core update file and will not be loaded.\r\nPlease load node update "
       "file."},
      {NodeFirmware(0x012F, 60), outdated, "Outdated KVX File!"},
      {NodeFirmware(0x0140, 60), outdated, "Outdated KVX File!"},
      {NodeFirmware(0x013F, 57),
       invalid + "Data bytes found in record 1 of x.kvx : 57 (at most 56)"},
      {{0x00, 0x08, 0x30}, invalid + "Bytes found in x.kvx : 3 (at least 4)"},
  };
  UpdateFixture nodes;
  EXPECT_EQ(nodes.Enabled(), kIdle);
  QString chosen;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    nodes.Load(chosen);
    EXPECT_EQ(nodes.Enabled(), kReady);
    EXPECT_EQ(nodes.Line(), "Node firmware 1.31: 2 records, 8 bytes");
    chosen = WriteFile("x.kvx", c.bytes);
    nodes.fixture.prompts.ExpectOpenFile(chosen, PathOf("new.kvx"));
    nodes.fixture.prompts.WhileOpen([&] { EXPECT_EQ(nodes.Enabled(), kIdle); });
    nodes.fixture.prompts.ExpectMessage(c.text, c.caption, Icon::kExclamation);
    nodes.Click(kPage, "Load...");
    EXPECT_EQ(nodes.Enabled(), kIdle);
    nodes.Click(kPage, "Program");
    EXPECT_EQ(nodes.begun, 0);
  }
  nodes.fixture.prompts.ExpectOpenFile(PathOf("missing.kvx"), chosen);
  nodes.fixture.prompts.ExpectMessage("Cannot open missing.kvx", "File Load Error",
                                      Icon::kExclamation);
  nodes.Click(kPage, "Load...");
}

// Four exchanges program the first node, one between is skipped, and four program the last.
TEST(NodeConfigPage, EndsAtAFaultAndCanBeRepeated) {
  const std::string failed = " - Update Failed|0:00 ffc8c8";
  const struct {
    int lost;  // the exchange
    std::string rows, line;
  } cases[]{
      // A node that never heard of the erase refuses its first record.
      {1, Old("1.20|CMD_FAIL" + failed) + kOkLeft + kEmptyLeft,
       "0 updated, 0 skipped, 0 aborted, 1 failed, 2 not reached"},
      {4, kOldDone + kSkipped + kEmptyDone,
       "2 updated, 1 skipped, 0 aborted, 0 failed, 0 not reached"},
      {7, kOldDone + kSkipped + Empty("N/A|Timeout" + failed),
       "1 updated, 1 skipped, 0 aborted, 1 failed, 0 not reached"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.lost);
    UpdateFixture nodes;
    nodes.Load();
    nodes.library.FailWrite({.nth = c.lost, .command = 0x1C});
    nodes.Program();
    EXPECT_EQ(nodes.Shown(), c.rows);
    EXPECT_EQ(nodes.Warns(), c.lost != 4) << "the report follows the run";
    EXPECT_EQ(nodes.Line(), c.line + " on Node I/O System (simulated) : 001");
    EXPECT_EQ(nodes.Enabled(), kIdle);
    nodes.ExpectSecondRunSucceeds();
  }
}

TEST(NodeConfigPage, AbortsTheNodeThatIsProgrammedUntilOneWasSkipped) {
  const struct {
    int exchange;
    bool force;
    std::string rows;
  } cases[]{
      {2, false, kOldAborted + kOkLeft + kEmptyLeft},
      {3, true, kOldDone + kOkDone + kEmptyDone},  // too late for the first, and forgotten
      {3, false, kOldDone + kSkipped + kEmptyDone},
      {6, true, kOldDone + Ok("Update Aborted|0:00 ffc8c8") + kEmptyLeft},
      {6, false, kOldDone + kSkipped + kEmptyDone},  // "Abort" is gone
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.rows);
    UpdateFixture nodes;
    nodes.Load();
    nodes.Force().setChecked(c.force);
    std::vector<std::string> seen;
    nodes.library.BeforeWrite({.nth = 1, .command = 0x1C, .onwards = true}, [&] {
      if (nodes.ended > 0) return;
      EXPECT_FALSE(nodes.fixture.link.gate.IsOpen());
      seen.push_back(nodes.Enabled());
      // The second press of a double click means nothing.
      QMouseEvent again(QEvent::MouseButtonDblClick, {3, 3}, {3, 3}, Qt::LeftButton, Qt::LeftButton,
                        Qt::NoModifier);
      auto* const program = nodes.Page(kPage).findChildren<QPushButton*>().at(1);
      QCoreApplication::sendEvent(program, &again);
      EXPECT_FALSE(program->isDown());
    });
    nodes.DuringExchange(c.exchange, [&] {
      nodes.Page(kPage).findChildren<QPushButton*>().at(1)->click();
      if (c.exchange == 6 && !c.force) return;
      EXPECT_EQ(nodes.Enabled(), "Refresh Program Load... tabs");
      for (const char* const button : {"Program", "Refresh", "Load..."}) nodes.Click(kPage, button);
      EXPECT_EQ(nodes.begun, 1);
    });
    nodes.Program();
    EXPECT_EQ(nodes.Shown(), c.rows);
    EXPECT_EQ(seen.front(), "Abort");
    if (c.exchange == 6 && c.force) {
      EXPECT_TRUE(nodes.fixture.link.table.CurrentNodes()[1].UpdateRequired()) << "it was erased";
    }
    const bool skips = !c.force && c.exchange > 2;
    // The finish of the first node comes after the press, the next node before the next one.
    if (c.exchange == 3) {
      EXPECT_EQ(seen[3], "Refresh Program Load... tabs");
      EXPECT_EQ(seen[5], skips ? "Refresh Load..." : "Abort");
    }
    if (skips) {
      EXPECT_EQ(seen.back(), "Refresh Load...");
    }
    EXPECT_EQ(nodes.Enabled(), kIdle);
    const auto interval = QGuiApplication::styleHints()->mouseDoubleClickInterval();
    nodes.now += std::chrono::milliseconds(interval);
    nodes.ExpectSecondRunSucceeds();
  }
}

TEST(NodeConfigPage, NeverForgetsThatTheWindowIsToClose) {
  const std::pair<int, std::string> cases[]{
      {1, kOldAborted + kOkLeft + kEmptyLeft},  {2, kOldAborted + kOkLeft + kEmptyLeft},
      {3, kOldDone + kOkLeft + kEmptyLeft},     {4, kOldDone + kSkipped + kEmptyAborted},
      {5, kOldDone + kSkipped + kEmptyAborted}, {6, kOldDone + kSkipped + kEmptyAborted},
      {7, kOldDone + kSkipped + kEmptyDone},
  };
  for (const auto& [exchange, rows] : cases) {
    SCOPED_TRACE(exchange);
    UpdateFixture nodes;
    nodes.Load();
    nodes.DuringExchange(exchange, [&] { nodes.run.StopRun(); });
    nodes.Program();
    EXPECT_EQ(nodes.Shown(), rows);
    EXPECT_EQ(nodes.Enabled(), kIdle);
    nodes.ExpectSecondRunSucceeds();
  }
}

TEST(NodeConfigPage, TakesTheChecksOfRowsThatAreStillToCome) {
  UpdateFixture nodes;
  nodes.Load();
  auto& list = nodes.List(kPage);
  list.Click(2, 1);
  nodes.DuringExchange(2, [&] { list.Click(5, 1); });
  nodes.Program();
  EXPECT_EQ(nodes.Shown(), kOldDone + "[ ]" + kOkLeft.substr(3) + "[ ]" + kEmptyLeft.substr(3));
  EXPECT_EQ(nodes.FlashOf(4), 0xFFFF);
  nodes.Click(kPage, "Copy");
  const std::string text = QApplication::clipboard()->text().toStdString();
  EXPECT_TRUE(
      text.starts_with("Node\tStatus\tLoader Ver.\tFlash Ver.\tNode Update Status\tTime\n"
                       "[x] Node 1\tActive\t1.00\t1.31\tUpdate Complete\t0:00\n"))
      << text;
  EXPECT_TRUE(text.ends_with("\n" + nodes.Line() + "\n")) << text;

  nodes.Load(PathOf("new.kvx"));
  list.Click(1, 1);
  nodes.Program();
  EXPECT_EQ(nodes.Enabled(), kIdle) << "no row is checked";
}

TEST(NodeConfigPage, SendsNothingToABoardOfAnotherProduct) {
  UpdateFixture nodes(std::string(kThreeNodes) +
                      R"(}, {"id": "c", "product": "0x1200", "mode": "flash", "firmware": "1.10",
                             "nodes": [{"node": 1, "flash": "1.20"}])");
  nodes.Load();
  nodes.fixture.link.table.SetCurrent(1);
  QueryNodeStatus(nodes.library, nodes.fixture.link.table);
  nodes.pages.ShowBoard();
  EXPECT_EQ(nodes.Rows(kPage, {0, 1}), kOld + "[ ] Node 2|N/A||| e1e1e1\n");
  nodes.fixture.prompts.ExpectMessage(
      "An invalid or incompatible file is currently loaded\r\n"
      "and cannot be used with the current device\r\n\r\n",
      "Invalid KVX File!", Icon::kExclamation);
  nodes.Program();
  EXPECT_EQ(nodes.bus.Find("c")->State().nodes[0].flash_version, 0x0120);
  EXPECT_EQ(nodes.Enabled(), kReady);
}

}  // namespace quillon::testing
