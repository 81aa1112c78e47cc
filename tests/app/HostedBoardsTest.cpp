// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <csignal>
#include <fstream>

#include "app/MainFixture.h"
#include "app/OpenedLibrary.h"
#include "testing/OwnFolders.h"

// The window over simulated boards in a process of their own.
namespace quillon::testing {
namespace {

namespace fs = std::filesystem;

fs::path Written(const char* name, const QByteArray& content) {
  const fs::path file = OwnFolders::Root() / name;
  std::ofstream(file, std::ios::binary).write(content.data(), content.size());
  return file;
}

// The processes that this one has started.
std::vector<pid_t> Children() {
  std::ifstream list("/proc/thread-self/children");
  return {std::istream_iterator<pid_t>(list), {}};
}

}  // namespace

TEST(HostedBoards, AnUpdateWhoseHostIsKilledFailsAsAnyOtherAndCanBeRepeated) {
  qputenv("QUILLON_KVUSB", SIM_LIBRARY);
  qputenv("QUILLON_KVUSB_HOST", "1");
  qputenv("QUILLON_SIM_LATENCY_US", "0");
  qputenv("QUILLON_SIM_STATE", (OwnFolders::Root() / "boards").c_str());
  qputenv("QUILLON_SIM_RIG", Written("rig.json", R"({"boards": [{"id": "f", "product": "0x0910",
      "serial": "003", "firmware": "2.71", "mode": "flash"}]})")
                                 .c_str());
  OpenedLibrary opened(QString::fromStdString(fs::path(HOST_PROGRAM).parent_path().string()));
  ASSERT_EQ(opened.Problem(), QString());
  FaultyLibrary library(opened.Library());
  MainFixture main(library);
  int told = 0;
  opened.SetWhenInTrouble([&] {
    ++told;
    main.window.ShowProblems();
  });
  main.window.Initialise();
  const auto click = [&](const QString& text) {
    for (auto* const button : main.window.ShownPageSet()->findChildren<QPushButton*>())
      if (button->text() == text) button->click();
  };
  const auto shows = [&](const char* text) {
    const auto labels = main.window.findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(),
                       [&](const QLabel* label) { return label->text().contains(text); });
  };
  const auto log = [&] {
    return main.window.ShownPageSet()->findChildren<QPlainTextEdit*>().at(1)->toPlainText();
  };

  main.prompts.ExpectOpenFile(QString::fromStdString(
      Written("new.kvx", QByteArray::fromHex("10090002000002830002000200000002000400000001"))
          .string()));
  click("Load...");
  const auto hosts = Children();
  ASSERT_EQ(hosts.size(), 1U);
  library.BeforeWrite({.nth = 2, .command = 0}, [&] { kill(hosts[0], SIGKILL); });
  main.prompts.ExpectMessage("Flash update failed!", "Flash Update Fail",
                             UserPrompts::Icon::kExclamation);
  click("Program");
  EXPECT_TRUE(log().endsWith("\nFlash Update Failure!\n")) << log().toStdString();
  EXPECT_EQ(told, 1);
  EXPECT_TRUE(shows("ended its process in WriteData."));
  EXPECT_EQ(main.link.table.Count(), 1U);

  click("Refresh");
  EXPECT_FALSE(shows("ended its process"));
  EXPECT_EQ(main.link.table.CurrentType(), 1U) << "still in its loader";
  main.prompts.ExpectMessage(
      "Flash update completed successfully!\r\n\r\nYou may click on the Execute button to "
      "restart the module\r\nin Device Mode.",
      "Flash Update Complete", UserPrompts::Icon::kInformation);
  click("Program");
  EXPECT_TRUE(log().endsWith("\nFlash Update Complete!\n")) << log().toStdString();
}

}  // namespace quillon::testing
