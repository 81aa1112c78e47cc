// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <sstream>
#include <vector>

#include "testing/OwnFolders.h"
#include "usbip/VirtualBoardMain.h"

namespace quillon::usbip {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct Ran {
  int status;
  std::string out, err;
};

// Runs the program where there is no vhci_hcd, already told to stop.
Ran RunWith(const std::vector<std::string>& arguments) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) return {-1, "", "no pipe"};
  const FileDescriptor stop(ends[0]);
  FileDescriptor(ends[1]).Close();
  std::ostringstream out, err;
  const Vhci vhci(testing::OwnFolders::Root() / "none");
  const int status = VirtualBoardMain(arguments, vhci, stop.Number(), out, err);
  return {status, out.str(), err.str()};
}

std::string Written(const std::string& name, const std::string& text) {
  const auto path = testing::OwnFolders::Root() / name;
  std::ofstream(path) << text;
  return path.string();
}

TEST(VirtualBoardMain, SaysWhatItNeedsAndComplainsInASentence) {
  const struct {
    std::vector<std::string> arguments;
    int status;
    const char* sentence;
  } cases[] = {
      {{"--help"}, 0, "modprobe vhci_hcd"},
      {{"--what"}, 2, "not expected: --what"},
      {{"--state"}, 2, "--state: 1 required FOLDER missing"},
      {{"a", "b"}, 2, "not expected: b"},
      {{"/nowhere/rig"}, 1, "The rig file /nowhere/rig cannot be opened: No such file"},
      {{"/tmp"}, 1, "The rig file /tmp is a folder."},
      {{Written("bad.json", "{}")}, 1, "bad.json cannot be used. "},
      {{"--state", Written("file", "") + "/folder"}, 1, "/folder cannot be made: "},
      {{"default"}, 1, "joystick-1: There is no "},
  };
  for (const auto& [arguments, status, sentence] : cases) {
    const Ran ran = RunWith(arguments);
    EXPECT_EQ(ran.status, status) << sentence;
    EXPECT_THAT(status == 0 ? ran.out : ran.err, HasSubstr(sentence));
  }
}

TEST(VirtualBoardMain, LeavesBoardsAloneThatAreNotPluggedIn) {
  const Ran ran = RunWith({Written("away.json", R"({"boards": [{"id": "a", "product": "0x0910",
                                                "firmware": "2.82", "plugged": false}]})")});
  EXPECT_EQ(ran.status, 0);
  EXPECT_THAT(ran.err, IsEmpty());
}

}  // namespace
}  // namespace quillon::usbip
