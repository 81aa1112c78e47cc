// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QEventLoop>
#include <QFile>
#include <fstream>
#include <optional>

#include "app/Elevated.h"
#include "testing/OwnFolders.h"

namespace quillon::testing {
namespace {

// A PATH of the test's own, in which pkexec is a script, if it is there at all.
class Elevated : public ::testing::Test {
 protected:
  Elevated() {
    std::filesystem::create_directory(tools_);
    qputenv("PATH", QByteArray::fromStdString(tools_.string()));
  }

  void Pkexec(const std::string& does) const {
    const auto file = tools_ / "pkexec";
    std::ofstream(file) << "#!/bin/sh\n" << does << '\n';
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  }

  ElevatedResult Run(const QStringList& arguments = {}) {
    std::optional<ElevatedResult> ended;
    QEventLoop loop;
    help_.run(arguments, [&](const ElevatedResult& result) {
      EXPECT_FALSE(ended) << "once";
      ended = result;
      loop.quit();
    });
    if (!ended) loop.exec();
    return *ended;
  }

  const std::filesystem::path tools_ = OwnFolders::Root() / "tools";
  AccessHelp help_ = SystemAccessHelp();
};

}  // namespace

TEST_F(Elevated, TellsHowPkexecEnded) {
  const struct {
    const char* does;
    ElevatedEnd end;
    const char* said;
  } cases[]{
      {"exit 0", ElevatedEnd::kDone, ""},
      {"echo talk; echo '  ' >&2; exit 0", ElevatedEnd::kDone, ""},
      {"echo 'Request dismissed' >&2; exit 126", ElevatedEnd::kDismissed, "Request dismissed"},
      {"echo 'No agent.' >&2; echo more >&2; exit 127", ElevatedEnd::kFailed, "No agent."},
      {"echo 'mv: no' >&2; exit 1", ElevatedEnd::kFailed, "mv: no"},
      {"kill -9 $$", ElevatedEnd::kFailed, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.does);
    Pkexec(c.does);
    const ElevatedResult result = Run();
    EXPECT_EQ(result.end, c.end);
    EXPECT_EQ(result.said, c.said);
  }
}

TEST_F(Elevated, SaysThatThereIsNoPkexecAndFindsOneThatComesLater) {
  const ElevatedResult result = Run();
  EXPECT_EQ(result.end, ElevatedEnd::kFailed);
  EXPECT_EQ(result.said, "There is no pkexec.");
  Pkexec("exit 0");
  EXPECT_EQ(Run().end, ElevatedEnd::kDone);
}

TEST_F(Elevated, HandsArgumentsOverAsTheyAreAndNoInput) {
  const std::string file = (OwnFolders::Root() / "noted").string();
  Pkexec("read -r line && exit 3; printf '%s|' \"$@\" > " + file);
  EXPECT_EQ(Run({"-c", "a 'b' \"c\"\n$d\\", ""}).end, ElevatedEnd::kDone);
  QFile noted(QString::fromStdString(file));
  ASSERT_TRUE(noted.open(QIODevice::ReadOnly));
  EXPECT_EQ(noted.readAll(), "-c|a 'b' \"c\"\n$d\\||");
}

TEST_F(Elevated, EndsTheProcessButDoesNotWaitForItWhenTheWindowGoes) {
  const std::string fifo = (OwnFolders::Root() / "fifo").string();
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  // Tells its number, then waits for a second reader, who never comes.
  Pkexec("echo $$ > " + fifo + "; read -r line < " + fifo + "; exit 0");
  help_.run({}, [](const ElevatedResult&) { ADD_FAILURE() << "nobody is there to be told"; });
  pid_t process = 0;
  std::ifstream(fifo) >> process;
  ASSERT_GT(process, 0);
  EXPECT_EQ(kill(process, 0), 0);
  help_ = {};
  EXPECT_EQ(waitpid(process, nullptr, 0), process) << "nobody has waited for it yet";
}

}  // namespace quillon::testing
