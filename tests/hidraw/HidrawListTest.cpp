// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <fstream>

#include "hidraw/HidrawList.h"
#include "testing/OwnFolders.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A /sys with HID interfaces, as little of it as is looked at.
class Sys {
 public:
  Sys() { fs::create_directories(root / "class/hidraw"); }

  // `where` is the HID device's folder below devices/.
  void Add(const std::string& where, const std::string& node) const {
    fs::create_directories(root / "devices" / where / "hidraw" / node);
    fs::create_symlink("../../devices/" + where + "/hidraw/" + node, root / "class/hidraw" / node);
  }
  void Write(const std::string& path, const std::string& content) const {
    std::ofstream(root / "devices" / path, std::ios::binary) << content;
  }
  std::vector<std::string> Devices(const std::vector<HidrawNode>& known = {}) const {
    std::error_code error;
    std::vector<std::string> devices;
    for (const HidrawNode& node : ListHidrawNodes(error, known, root))
      devices.push_back(node.device);
    EXPECT_FALSE(error);
    return devices;
  }

  fs::path root = testing::OwnFolders::Root() / "sys";
};

const std::string kBoard = "usb1/1-2/1-2:1.1/0003:4C7E:0910.0007";

TEST(HidrawList, NamesOursByTheirNumbers) {
  const Sys sys;
  sys.Add("usb1/1-1/1-1:1.0/0003:4C7E:0910.0003", "hidraw10");
  sys.Add("usb1/1-1/1-1:1.1/0003:4C7E:0910.0004", "hidraw2");
  sys.Add("usb1/1-3/1-3:1.0/0003:1234:0910.0005", "hidraw3");
  sys.Add("usb1/1-4/1-4:1.0/nonsense", "hidraw4");
  fs::create_symlink("../../devices/gone", sys.root / "class/hidraw/hidraw5");
  EXPECT_THAT(sys.Devices(), ElementsAre("/dev/hidraw2", "/dev/hidraw10"));
  EXPECT_FALSE(ReadHidrawNode(sys.root / "class/hidraw/hidraw3")) << "of another vendor";
}

TEST(HidrawList, TellsWhatAnInterfaceIsForAndDoesWithoutADescriptor) {
  const Sys sys;
  sys.Add(kBoard, "hidraw3");
  const auto type = [&] { return ReadHidrawNode(sys.root / "class/hidraw/hidraw3").value().type; };
  EXPECT_EQ(type(), std::nullopt) << "no descriptor";
  sys.Write(kBoard + "/report_descriptor", std::string("\x06\x4C\xFF\x09\x03\xA1\x01\xC0"));
  EXPECT_EQ(type(), 3U);
  sys.Write(kBoard + "/report_descriptor", std::string("\x06\x4C\xFF\x09\x04\xA1\x01\xC0"));
  EXPECT_EQ(type(), std::nullopt) << "no device type";

  const fs::path descriptor = sys.root / "devices" / kBoard / "report_descriptor";
  fs::remove(descriptor);
  fs::create_symlink("/proc/self/mem", descriptor);  // opens, but cannot be read
  EXPECT_THAT(sys.Devices(), IsEmpty()) << "leaves while it is read";
}

TEST(HidrawList, KeepsWhatItKnowsOfANodeAndOfNoOther) {
  const Sys sys;
  sys.Add(kBoard, "hidraw3");
  sys.Write(kBoard + "/report_descriptor", std::string("\x06\x4C\xFF\x09\x03\xA1\x01\xC0"));
  std::error_code error;
  auto known = ListHidrawNodes(error, {}, sys.root);
  ASSERT_EQ(known.size(), 1U);
  known[0].product_text = "known";
  EXPECT_EQ(ListHidrawNodes(error, known, sys.root)[0].product_text, "known");

  // As after another driver had the HID device for a while.
  fs::remove(sys.root / "class/hidraw/hidraw3");
  sys.Add(kBoard, "hidraw4");
  EXPECT_THAT(sys.Devices(known), ElementsAre("/dev/hidraw4"));
  fs::remove(sys.root / "class/hidraw/hidraw4");
  EXPECT_THAT(sys.Devices(known), IsEmpty());
}

}  // namespace
}  // namespace quillon
