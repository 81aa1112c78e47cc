// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <fstream>

#include "app/LibraryNotifier.h"
#include "app/OpenedLibrary.h"
#include "app/Profile.h"
#include "app/SingleInstance.h"
#include "kvusb/sim/Bus.h"
#include "kvusb/trace/TraceText.h"
#include "testing/OwnFolders.h"
#include "testing/link/SimLibrary.h"

namespace quillon::testing {
namespace {

QString Own(const char* name) {
  return QString::fromStdString((OwnFolders::Root() / name).string());
}

void WriteFile(const QString& path, const QByteArray& content) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(content);
}

}  // namespace

TEST(SingleInstance, IsTakenWhileAnotherOneLivesEvenIfItCrashed) {
  {
    const SingleInstance first;
    EXPECT_FALSE(first.IsTaken());
    EXPECT_TRUE(SingleInstance().IsTaken());
  }
  EXPECT_FALSE(SingleInstance().IsTaken());

  const pid_t child = fork();
  if (child == 0) {
    const SingleInstance held;
    kill(getpid(), SIGKILL);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_FALSE(SingleInstance().IsTaken());
}

TEST(SingleInstance, StartsAllTheSameWhereNoMarkCanBeSet) {
  qputenv("XDG_RUNTIME_DIR", "/nowhere/at/all");
  EXPECT_FALSE(SingleInstance().IsTaken());
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

TEST(OpenedLibrary, TellsWhyThereIsNoLibrary) {
  WriteFile(Own("text.so"), "no library");
  for (const char* name : {"text.so", "missing.so"}) {
    qputenv("QUILLON_KVUSB", Own(name).toUtf8());
    OpenedLibrary opened(Own("."));
    EXPECT_THAT(
        opened.Problem().toStdString(),
        ::testing::AllOf(::testing::StartsWith("The HID library "), ::testing::HasSubstr(name)));
    EXPECT_EQ(opened.Library().DescribeProblem(nullptr).sentence, opened.Problem().toStdString());
    std::uint32_t count = 0;
    DeviceRecord record{};
    EXPECT_EQ(opened.Library().DetectHID(count, {&record, 1}, 2), 0);
  }
}

TEST(OpenedLibrary, TracesTheSimulatedBoards) {
  qputenv("QUILLON_KVUSB", SIM_LIBRARY);
  qputenv("QUILLON_SIM_LATENCY_US", "0");
  qputenv("QUILLON_TRACE", Own("trace.txt").toUtf8());
  WriteFile(Own("trace.txt"), "readable to others\n");
  {
    OpenedLibrary opened(Own("."));
    ASSERT_EQ(opened.Problem(), "");
    std::vector<DeviceRecord> records(64);
    std::uint32_t count = 0;
    EXPECT_NE(opened.Library().DetectHID(count, records, 2), 0);
  }
  std::ifstream file(Own("trace.txt").toStdString());
  const std::string text(std::istreambuf_iterator<char>(file), {});
  const auto entries = ParseTrace(text);
  ASSERT_TRUE(std::holds_alternative<std::vector<TraceEntry>>(entries)) << text;
  EXPECT_THAT(text, ::testing::HasSubstr("board pid 0910"));
  EXPECT_EQ(QFile(Own("trace.txt")).permissions() & 0x0077, QFile::Permissions());
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

TEST(LibraryNotifier, HandsEventsOnFromTheQueue) {
  sim::Bus bus(sim::DefaultRig(), {.latency = {}});
  SimLibrary library(bus);
  std::vector<std::string> events;
  {
    LibraryNotifier notifier(library);
    ASSERT_TRUE(notifier.Start([&](std::uint32_t event, std::uint32_t, std::string_view path) {
      EXPECT_TRUE(IsBoardChange(event, KVUSB_DEVICE_INTERFACE, path));
      events.push_back(event == KVUSB_EVENT_ARRIVAL ? "arrival" : "removal");
    }));
    bus.Unplug("joystick-1");
    bus.Plug("joystick-1");
    EXPECT_TRUE(events.empty()) << "never inside the library's call";
    QCoreApplication::processEvents();
    EXPECT_THAT(events, ::testing::ElementsAre("removal", "arrival"));
    bus.Unplug("joystick-1");
  }
  QCoreApplication::processEvents();
  bus.Plug("joystick-1");
  EXPECT_EQ(events.size(), 2U) << "silent once it is gone";
}

}  // namespace quillon::testing
