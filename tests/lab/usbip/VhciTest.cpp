// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "testing/OwnFolders.h"
#include "usbip/Vhci.h"
#include "usbip/VhciPorts.h"

namespace quillon::usbip {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

constexpr const char* kTitle = "hub port sta spd dev      sockfd local_busid\n";

TEST(VhciPorts, FreeOnesForFullSpeedAreFound) {
  EXPECT_THAT(FreePorts(std::string(kTitle) + "hs  0000 006 002 00010002 000005 1-1\n"
                                              "hs  0001 004 000 00000000 000000 0-0\n"
                                              "hs  0002 005 002 00010002 000006 1-2\n"
                                              "hs  0007 004 000 00000000 000000 0-0\n"
                                              "ss  0008 004 000 00000000 000000 0-0\n"
                                              "hs  0019 004 000 00000000 000000 0-0\n"),
              ElementsAre(1, 7, 19));
}

TEST(VhciPorts, LinesWithoutSenseNameNoPort) {
  for (const char* text : {"", "\n\n", kTitle, "hs", "hs  0001", "hs  0001 00", "hs  1x 004 0",
                           "hs  -1 004 0", "hs  99999999999 004 0", "hs 0001 4x", "xs  0001 004"})
    EXPECT_THAT(FreePorts(text), IsEmpty()) << text;
  EXPECT_THAT(FreePorts("hs  0003 004"), ElementsAre(3)) << "the last line, without its end";
}

std::filesystem::path FolderWith(const std::string& name, const std::string& status) {
  const auto folder = testing::OwnFolders::Root() / name;
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "attach");
  std::ofstream(folder / "status") << kTitle << status;
  return folder;
}

std::string WhyNot(const std::filesystem::path& folder) {
  const auto attached = Vhci(folder).Attach();
  const auto* problem = std::get_if<std::string>(&attached);
  return problem == nullptr ? "attached" : *problem;
}

TEST(Vhci, GivesTheKernelASocketOnAFreePortOfAnyController) {
  const auto folder = FolderWith("two controllers", "hs  0000 006 002 00010002 000005 1-1\n");
  std::ofstream(folder / "status.1") << kTitle << "hs  0016 004 000 00000000 000000 0-0\n";
  const auto attached = Vhci(folder).Attach();
  ASSERT_TRUE(std::holds_alternative<Vhci::Attached>(attached));
  EXPECT_EQ(std::get<Vhci::Attached>(attached).port, 16U);
  std::ifstream file(folder / "attach");
  const std::string told((std::istreambuf_iterator<char>(file)), {});
  EXPECT_THAT(told, MatchesRegex("16 [0-9]+ 65538 2"));
}

TEST(Vhci, SaysWhatIsInTheWay) {
  EXPECT_THAT(WhyNot(testing::OwnFolders::Root() / "none"), HasSubstr("modprobe vhci_hcd"));
  const auto folder = FolderWith("one controller", "ss  0008 004 000 00000000 000000 0-0\n");
  EXPECT_THAT(WhyNot(folder), HasSubstr("No port"));
  std::filesystem::remove(folder / "attach");
  std::filesystem::create_directory(folder / "attach");
  EXPECT_THAT(WhyNot(folder), HasSubstr("cannot be opened: Is a directory."));
}

}  // namespace
}  // namespace quillon::usbip
