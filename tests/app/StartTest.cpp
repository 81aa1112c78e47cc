// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QFile>
#include <fstream>

#include "app/InstalledVersion.h"
#include "app/LibraryNotifier.h"
#include "app/OpenedLibrary.h"
#include "app/OwnFiles.h"
#include "kvusb/trace/TraceText.h"
#include "sim/Bus.h"
#include "testing/OwnFolders.h"

namespace quillon::testing {
TEST(InstalledVersion, IsTheOneThatWasBuilt) {
  const InstalledVersion version = ReadInstalledVersion();
  EXPECT_EQ(version.text, PROGRAM_VERSION);
  ASSERT_TRUE(version.numbers);
  EXPECT_EQ(version.numbers, ReadProgramVersion(PROGRAM_VERSION));
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
#ifndef _WIN32  // where the profile's folder keeps others away
  EXPECT_EQ(QFile(Own("trace.txt")).permissions() & 0x0077, QFile::Permissions());
#endif
}

TEST(LibraryNotifier, HandsOneEventOnATurnHoweverManyCome) {
  sim::Bus bus(sim::DefaultRig(), {.latency = {}});
  std::vector<std::string> events;
  {
    LibraryNotifier notifier(bus);
    ASSERT_TRUE(notifier.Start([&](std::uint32_t event, std::uint32_t, std::string_view path) {
      EXPECT_TRUE(IsBoardChange(event, KVUSB_DEVICE_INTERFACE, path));
      events.push_back(event == KVUSB_EVENT_ARRIVAL ? "arrival" : "removal");
    }));
    bus.Unplug("joystick-1");
    bus.Plug("joystick-1");
    EXPECT_TRUE(events.empty()) << "never inside the library's call";
    QCoreApplication::processEvents();
    EXPECT_THAT(events, ::testing::ElementsAre("removal"));
    bus.Unplug("joystick-1");
  }
  QCoreApplication::processEvents();
  bus.Plug("joystick-1");
  EXPECT_EQ(events.size(), 1U) << "silent once it is gone";
}

}  // namespace quillon::testing
