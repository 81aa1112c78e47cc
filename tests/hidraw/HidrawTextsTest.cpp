// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "hidraw/HidrawList.h"
#include "kernel/EmulatedKernel.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

// A device in the emulated /sys, with as little as udev needs to know one.
void AddDevice(const fs::path& folder, const std::string& subsystem, const std::string& uevent) {
  fs::create_directories(folder);
  fs::create_symlink("/sys/bus/" + subsystem, folder / "subsystem");
  std::ofstream(folder / "uevent") << uevent;
}

TEST(HidrawTexts, AreThoseOfTheUsbDeviceElseThoseOfTheHidDevice) {
  const testing::EmulatedKernel kernel;
  const fs::path devices = fs::path(std::getenv("UMOCKDEV_DIR")) / "sys/devices";
  const std::string hid = "usb1/1-2/1-2:1.1/0003:4C7E:0910.0007", node = hid + "/hidraw/hidraw3";
  AddDevice(devices / hid, "hid", "HID_ID=0003:1:2\nHID_NAME=A name\nHID_UNIQ=007\n");
  AddDevice(devices / node, "hidraw", "");
  std::ofstream(devices / hid / "report_descriptor") << "\x06\x4C\xFF\x09\x03\xA1\x01\xC0";
  const auto read = [&] { return ReadHidrawNode("/sys/devices/" + node).value(); };
  EXPECT_EQ(read().board, "/sys/devices/" + hid) << "not on USB";
  EXPECT_EQ(read().product_text, "A name");
  EXPECT_EQ(read().serial, "007");
  EXPECT_EQ(read().release, 0);

  AddDevice(devices / "usb1/1-2/1-2:1.1", "usb", "DEVTYPE=usb_interface\n");
  AddDevice(devices / "usb1/1-2", "usb", "DEVTYPE=usb_device\n");
  AddDevice(devices / "usb1", "usb", "DEVTYPE=usb_device\n");
  std::ofstream(devices / "usb1/product") << "Hub\n";
  std::ofstream(devices / "usb1/1-2/bcdDevice") << "0282\n";
  std::ofstream(devices / "usb1/1-2/product") << "Board ";
  EXPECT_EQ(read().board, "/sys/devices/usb1/1-2");
  EXPECT_EQ(read().release, 0x0282);
  EXPECT_EQ(read().product_text, "Board ") << "without a line end";
  EXPECT_EQ(read().serial, "") << "the board has none";

  fs::remove_all(devices / node);
  EXPECT_FALSE(ReadHidrawNode("/sys/devices/" + node));
}

}  // namespace
}  // namespace quillon
