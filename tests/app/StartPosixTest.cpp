// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>

#include "app/OpenedLibrary.h"
#include "app/OwnFiles.h"
#include "app/Profile.h"
#include "app/SingleInstance.h"
#include "testing/OwnFolders.h"

namespace quillon::testing {
TEST(SingleInstance, IsTakenWhileAnotherOneLivesEvenIfItCrashed) {
  {
    const SingleInstance first(OwnFolders::Root());
    EXPECT_FALSE(first.IsTaken());
    EXPECT_TRUE(SingleInstance(OwnFolders::Root()).IsTaken());
  }
  EXPECT_FALSE(SingleInstance(OwnFolders::Root()).IsTaken());

  const pid_t child = fork();
  if (child == 0) {
    const SingleInstance held(OwnFolders::Root());
    kill(getpid(), SIGKILL);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_FALSE(SingleInstance(OwnFolders::Root()).IsTaken());
}

TEST(SingleInstance, FallsBackFromWhatIsNotTheUsersAloneAndNeedsNoEnvironment) {
  namespace fs = std::filesystem;
  const fs::path root = OwnFolders::Root(), lock = "quillon.lock";
  const fs::path places[]{root / ("quillon-" + std::to_string(geteuid())),
                          root / "XDG_RUNTIME_DIR/quillon", root / "HOME/.local/state/quillon"};
  qunsetenv("XDG_STATE_HOME");
  const std::function<void(const fs::path&)> ways[]{
      [](const auto& place) { fs::permissions(place, fs::perms::all); },
      [](const auto& place) {  // only root can give a folder away
        if (chown(place.c_str(), 12345, 12345) != 0) fs::permissions(place, fs::perms::all);
      },
      [&](const auto& place) { fs::remove_all(place), fs::create_symlink(root, place); },
      [&](const auto& place) { fs::remove(place / lock), fs::create_directory(place / lock); },
      [&](const auto& place) { fs::remove(place / lock), fs::create_symlink("x", place / lock); }};
  for (const auto& spoil : ways) {
    for (const fs::path& place : places) fs::remove_all(place);
    for (const fs::path& place : places) {
      const SingleInstance first(root);
      EXPECT_TRUE(!first.IsTaken() && first.Problem().empty()) << first.Problem();
      EXPECT_TRUE(SingleInstance(root).IsTaken()) << place;
      spoil(place);
    }
    EXPECT_TRUE(SingleInstance(root).Problem().starts_with("Quillon cannot tell whether it is "));
  }
  fs::remove_all(places[0]);
  const SingleInstance first(root);
  for (const char* const name : {"XDG_RUNTIME_DIR", "HOME"}) qunsetenv(name);
  EXPECT_TRUE(SingleInstance(root).IsTaken());
}

TEST(Profile, FallsBackToDefaultsForBrokenValuesAndFiles) {
  const QString folder = qEnvironmentVariable("XDG_CONFIG_HOME") + "/Quillon";
  QDir().mkpath(folder);
  const struct {
    const char* content;
    int auto_connect, auto_update;
  } cases[]{{"[Options]\nAuto%20Connect=0\nAuto%20Update=3\n", 0, 3},
            {"[Options]\nAuto%20Update=yes\n", 1, 1},
            {"[Options\n\xff\xfe broken = = @Variant(\n\\", 1, 1},
            {"", 1, 1}};
  for (const auto& c : cases) {
    WriteFile(folder + "/Quillon.conf", c.content);
    Profile profile;
    EXPECT_EQ(profile.AutoConnect(), c.auto_connect) << c.content;
    EXPECT_EQ(profile.AutoUpdate(), c.auto_update) << c.content;
  }
}

TEST(Profile, NeitherWaitsForNorWritesIntoWhatIsNoRegularFile) {
  qputenv("XDG_CONFIG_DIRS", Own("system").toUtf8());
  for (const QString& folder : {qEnvironmentVariable("XDG_CONFIG_HOME"), Own("system")}) {
    for (const char* const name : {"/Quillon/Quillon.conf", "/Quillon.conf"}) {
      const std::filesystem::path file = (folder + name).toStdString();
      std::filesystem::create_directories(file);
      EXPECT_TRUE(Profile().Problem().contains("Quillon.conf is a folder."));
      std::filesystem::remove(file);
      ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
      Profile profile;
      EXPECT_THAT(profile.Problem().toStdString(), ::testing::HasSubstr(" is not a regular file."));
      profile.SetAutoUpdate(5);
      EXPECT_EQ(profile.AutoUpdate(), 1) << "not kept";
      std::filesystem::remove(file);
    }
  }
}

TEST(OpenedLibrary, NeitherWaitsNorEndsWhereItsTraceCannotBeWritten) {
  qputenv("QUILLON_KVUSB", SIM_LIBRARY);
  qputenv("QUILLON_SIM_LATENCY_US", "0");
  const QString pipe = Own("pipe");
  ASSERT_EQ(mkfifo(pipe.toUtf8().constData(), 0600), 0);
  enum Reader { kNone, kLeaves, kSleeps };
  const std::tuple<QString, Reader, const char*> cases[]{
      {Own("no/such"), kNone, "no/such cannot be written: "},
      {Own("."), kNone, " is a folder."},
      {"/dev/full", kNone, "The trace has stopped. The trace file /dev/full cannot be written: "},
      {pipe, kNone, "nobody reads this pipe."},
      {pipe, kLeaves, "pipe cannot be written: "},
      {pipe, kSleeps, "its reader is too slow."}};
  for (const auto& [file, behaviour, problem] : cases) {
    const int reader = behaviour == kNone ? -1 : open(pipe.toUtf8(), O_RDONLY | O_NONBLOCK);
    qputenv("QUILLON_TRACE", file.toUtf8());
    OpenedLibrary opened(Own("."));
    if (behaviour == kLeaves) close(reader);
    std::vector<DeviceRecord> records(64);
    for (std::uint32_t i = 0, count = 0; i < 1000; ++i)
      ASSERT_NE(opened.Library().DetectHID(count, records, 2), 0);
    EXPECT_THAT(opened.Problem().toStdString() + opened.Library().DescribeProblem(nullptr).sentence,
                ::testing::HasSubstr(problem));
  }
}

}  // namespace quillon::testing
