// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QCursor>
#include <QGuiApplication>
#include <QMenuBar>
#include <QPlainTextEdit>

#include "app/CHomePage.h"
#include "app/MainFixture.h"
#include "firmware/NodeStatus.h"

namespace quillon::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Icon = UserPrompts::Icon;

constexpr const char* kNone = "No Updates available.";
constexpr const char* kUnable = "Unable to check for updates.";
constexpr const char* kBoard = R"({"id": "j", "product": "0x0910", "firmware": "2.82"})";
constexpr const char* kNodes = R"({"id": "n", "product": "0x0800", "firmware": "1.10",
                                   "nodes": [{"node": 1, "flash": "1.20"}]})";
constexpr int kProgramCheck = 32778, kFirmwareCheck = 32779;

std::string Offer(const std::string& version) {
  return "New version " + version + " is available online. Visit online update page?";
}

// The main window after its start, with a server for the lists.
struct WebMain : SimMain {
  explicit WebMain(const std::string& boards) : SimMain(boards) {
    fixture.window.Initialise();
    qputenv("QUILLON_UPDATE_BASE", "http://u");
  }
  ~WebMain() {
    qunsetenv("QUILLON_UPDATE_BASE");
    SetOnlineNodeVersion(NodeRecord::kNoVersion);
  }

  QAction& Entry(int command) {
    for (const QAction* const menu : fixture.window.menuBar()->actions()) {
      for (QAction* const entry : menu->menu()->actions()) {
        if (entry->data().toInt() == command) return *entry;
      }
    }
    throw std::runtime_error("The menu has no such entry");
  }
  void ExpectInformation(const char* text) {
    fixture.prompts.ExpectMessage(text, "Version Check", Icon::kInformation);
  }
  void ExpectOffer(const std::string& version, bool yes) {
    fixture.prompts.ExpectQuestion(Offer(version), "Update Check", yes, Icon::kInformation);
  }
  OwnWeb& web = fixture.web;
};

}  // namespace

TEST(UpdateChecks, AskOnceAtTheEndOfAStartThatIsToAsk) {
  const struct {
    const char* base;
    int option;
    bool registers, asks;
  } cases[]{{"http://u", 1, true, true},
            {"http://u", 0, true, false},
            {"http://u", 1, false, false},
            {"", 1, true, false}};
  for (const auto& c : cases) {
    SimMain main(kBoard);
    auto& [link, prompts, notifier, profile, settled, on_settle, access, web, window] =
        main.fixture;
    profile.SetAutoUpdate(c.option);
    notifier.registers = c.registers;
    qputenv("QUILLON_UPDATE_BASE", c.base);
    web.answers["http://u/update.txt"] = {FetchEnd::kText, "1|2|10|http://page"};
    if (c.asks) prompts.ExpectQuestion(Offer("1.2a"), "Update Check", true, Icon::kInformation);
    std::size_t boards = 0;
    web.while_waiting = [&, &tree = window.Tree()] {
      boards = tree.model()->rowCount(tree.currentIndex().parent());
    };
    window.Initialise();
    window.Initialise();
    EXPECT_EQ(web.asked.size(), c.asks ? 1 : 0);
    EXPECT_EQ(web.opened.size(), c.asks ? 1 : 0);
    EXPECT_EQ(boards, c.asks ? 1 : 0) << "after the first detection";
    qunsetenv("QUILLON_UPDATE_BASE");
    profile.SetAutoUpdate(1);
  }
}

TEST(UpdateChecks, SayWhatBecameOfEachOfThem) {
  const struct {
    int command;
    Fetched answer;
    std::string message = {}, offer = {}, opened = {};
  } cases[]{
      {kProgramCheck, {}, kUnable},
      {kProgramCheck, {FetchEnd::kText, ""}, kUnable},
      {kProgramCheck, {FetchEnd::kReadFailed, ""}},
      {kProgramCheck, {FetchEnd::kText, "1|2|9|http://page"}, kNone},
      {kFirmwareCheck, {}, kUnable},
      {kFirmwareCheck, {FetchEnd::kReadFailed, ""}},
      {kFirmwareCheck, {FetchEnd::kText, "0920|FFFF|http://other"}},
      {kFirmwareCheck, {FetchEnd::kText, "0910|0282|http://page"}, kNone},
      {kFirmwareCheck, {FetchEnd::kText, "0910|0283|https://page"}, "", "2.83", "https://page"},
      {kFirmwareCheck, {FetchEnd::kText, "0910|0283|file:///etc/passwd"}, "", "2.83"},
      {kFirmwareCheck, {FetchEnd::kText, "0910|0283"}, "", "2.83"},
  };
  // A loader's firmware is the one that it was asked for; firmware itself says which it is.
  for (const char* mode : {"device", "flash"}) {
    WebMain main(QString(kBoard).replace('}', ", \"mode\": \"%1\"}").arg(mode).toStdString());
    for (const auto& c : cases) {
      SCOPED_TRACE(c.answer.text);
      main.web.answers["http://u/update.txt"] = main.web.answers["http://u/firmupdate.txt"] =
          c.answer;
      if (!c.message.empty()) main.ExpectInformation(c.message.c_str());
      if (!c.offer.empty()) {
        main.ExpectOffer(c.offer, true);
        const std::string page =
            c.answer.text.substr(std::min(c.answer.text.size(), std::size_t{10}));
        if (c.opened.empty()) {
          main.fixture.prompts.ExpectMessage(
              page.empty() ? "The version list names no update page."
                           : "The update page was not opened, because its address is no web "
                             "address:\n" +
                                 page,
              "Update Check", Icon::kExclamation);
        }
      }
      main.web.opened.clear();
      main.Entry(c.command).trigger();
      EXPECT_EQ(main.web.opened,
                c.opened.empty() ? std::vector<std::string>() : std::vector<std::string>{c.opened});
    }
    main.ExpectOffer("2.83", false);
    main.web.answers["http://u/firmupdate.txt"] = {FetchEnd::kText, "0910|0283|https://page"};
    main.fixture.window.Tree().Run(DeviceTool::kCheckUpdate);
    EXPECT_THAT(main.web.opened, IsEmpty());
  }
}

TEST(UpdateChecks, OfANodeBoardAskForItsNodesToo) {
  for (const char* const item : {": 001", "Port B"}) {
    WebMain main(
        std::string(R"({"id": "j", "product": "0x0910", "serial": "100", "firmware": "2.82"},)") +
        kNodes);
    main.Select(item);
    main.web.answers["http://u/firmupdate.txt"] = {FetchEnd::kText, "0800|0110|http://page"};
    main.web.answers["http://u/nodeupdate.txt"] = {FetchEnd::kText, "0800|0131|http://page"};
    main.ExpectInformation(kNone);
    const auto report = [&] {
      return main.fixture.window.ShownPageSet()->findChild<QPlainTextEdit*>()->toPlainText();
    };
    EXPECT_TRUE(report().contains("WARNING: NODE")) << item;
    main.fixture.window.Tree().Run(DeviceTool::kCheckUpdate);
    EXPECT_THAT(main.web.asked,
                ElementsAre("http://u/firmupdate.txt 1024", "http://u/nodeupdate.txt 1024"));
    EXPECT_EQ(OnlineNodeVersion(), 0x0131);
    EXPECT_FALSE(report().contains("WARNING: NODE")) << "a newer one online outweighs it";
    EXPECT_TRUE(main.fixture.window.ShownPageSet()->isTabEnabled(3));

    main.web.answers.clear();
    main.fixture.link.table.CheckNode(0, false);
    for (int list = 0; list < 2; ++list) main.ExpectInformation(kUnable);
    main.fixture.window.Tree().Run(DeviceTool::kCheckUpdate);
    EXPECT_FALSE(main.fixture.link.table.CheckedNodes()[0]) << "nothing new was learnt";

    main.web.answers["http://u/nodeupdate.txt"] = {FetchEnd::kText, "0800|0141|http://page"};
    main.ExpectInformation(kUnable);
    main.web.while_waiting = [&] { main.bus.Unplug("n"); };
    main.fixture.window.Tree().Run(DeviceTool::kCheckUpdate);
    EXPECT_TRUE(main.fixture.link.table.Nodes(1)[0].IsActive())
        << "a board that is gone says nothing";
  }
}

TEST(UpdateChecks, LetNothingElseBeginAndEndWithTheWindow) {
  WebMain main(kBoard);
  auto& window = main.fixture.window;
  main.web.while_waiting = [&] {
    main.Entry(kProgramCheck).trigger();
    main.fixture.ReportArrival();
    main.fixture.RunEvents();
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
  };
  main.ExpectInformation(kUnable);
  main.fixture.settled = 0;
  window.findChild<CHomePage*>()->UpdatesRequested();
  EXPECT_EQ(main.web.asked.size(), 1);
  EXPECT_EQ(main.fixture.settled, 0);
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
  main.fixture.RunEvents();
  EXPECT_EQ(main.fixture.settled, 1) << "the board that came meanwhile";

  window.show();
  main.web.while_waiting = [&] { window.close(); };
  main.Entry(kFirmwareCheck).trigger();
  EXPECT_TRUE(main.web.stopped);
  EXPECT_TRUE(window.isVisible());
  main.fixture.RunEvents();
  EXPECT_FALSE(window.isVisible()) << "and without a message";
}

TEST(HomePage, OpensTheManualAndTheWebSite) {
  WebMain main("");
  EXPECT_FALSE(main.Entry(kFirmwareCheck).isEnabled());
  const QString program = QCoreApplication::applicationDirPath();
  main.fixture.prompts.ExpectMessage("The help file could not be located!", "Quillon: Help File",
                                     Icon::kNone);
  main.fixture.window.findChild<CHomePage*>()->HelpRequested();
  const std::string beside = (program + "/quillon.pdf").toStdString();
  const std::string installed = (program + "/../share/doc/quillon/quillon.pdf").toStdString();
  EXPECT_THAT(main.web.opened, ElementsAre("./quillon.pdf", beside, installed));
  main.web.opened.clear();
  main.web.opens_documents = true;
  main.Entry(57667).trigger();
  main.fixture.window.findChild<CHomePage*>()->WebSiteRequested();
  EXPECT_THAT(main.web.opened, ElementsAre("./quillon.pdf", ::testing::StartsWith("http")));
}

}  // namespace quillon::testing
