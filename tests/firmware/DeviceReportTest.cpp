// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <cstring>

#include "devlink/Products.h"
#include "firmware/DeviceReport.h"
#include "firmware/VersionWord.h"

namespace quillon {
namespace {

DeviceRecord Board(std::uint16_t product_id, std::uint16_t version, std::uint16_t queried = 0,
                   std::uint8_t firmware_present = 1) {
  DeviceRecord record{};
  record.product_id = product_id;
  record.version = version;
  record.queried_version = queried;
  record.firmware_present = firmware_present;
  std::strcpy(record.product_text, "Box");
  std::strcpy(record.manufacturer, "Maker");
  std::strcpy(record.serial_number, "042");
  return record;
}

TEST(DeviceReport, SpellsOutBothModesAndTheEmptyForm) {
  EXPECT_EQ(ReportOnDevice(Board(0x0910, 0x0282, 0x0999), 2, 2).text,
            "Device : Box\r\n\r\n  Manufacturer : Maker\r\n  Product ID : 9.10\r\n"
            "  Flash Version : 2.82\r\n  Device Serial Num. : 042\r\n");
  EXPECT_EQ(ReportOnDevice(Board(0x1010, 0x0100, 0x1234), 1, 2).text,
            "Device : Box\r\n\r\n  Manufacturer : Maker\r\n  Product ID : 10.10\r\n"
            "  Loader Version : 1.00\r\n  Flash Version : 12.34\r\n"
            "  Device Serial Num. : 042\r\n");
  EXPECT_EQ(EmptyDeviceReport(false),
            "No devices detected. \r\n\r\n  Manufacturer : \r\n  Product ID : \r\n"
            "  Device Version Num.: \r\n  Device Serial Num. : \r\n");
  EXPECT_EQ(EmptyDeviceReport(true),
            "No devices detected. \r\n\r\n  Product ID : \r\n  Device Version Num.: \r\n"
            "  Device Serial Num. : \r\n  EEPROM : \r\n");
}

TEST(DeviceReport, JudgesTheFirmwareByItsRelease) {
  constexpr const char* kWarning = "\r\n  WARNING: Firmware update required!\r\n";
  const struct {
    const char* name;
    DeviceRecord record;
    std::uint32_t type, device_mode;
    const char* judged;
  } cases[]{
      {"required", Board(0x0910, 0x0282), 2, 2, "matches pages"},
      {"last digit differs", Board(0x0910, 0x0289), 2, 2, "matches pages"},
      {"older", Board(0x0910, 0x027F), 2, 2, "old warns"},
      {"newer", Board(0x0910, 0x0290), 2, 2, "new"},
      {"invalid, in Device Mode", Board(0x0910, 0x0282, 0, 0), 2, 2, "old pages warns"},
      {"newer, but invalid", Board(0x0910, 0x0290, 0, 0), 2, 2, "old warns"},
      {"loader with the required one", Board(0x0910, 0x0100, 0x0282), 1, 2, "matches flash"},
      {"the loader's counts for nothing", Board(0x0910, 0x0282, 0x0100), 1, 2, "old flash warns"},
      {"loader without firmware", Board(0x0910, 0x0100, 0, 1), 1, 2, "old flash warns"},
      {"node system", Board(0x0800, 0x0110, 0x0999), 3, 3, "matches pages"},
      {"type 2 is not its Device Mode", Board(0x0800, 0x0110, 0x0111), 2, 3, "matches flash"},
      {"unknown product", Board(0x4242, 0x000F), 2, 2, "matches pages"},
      {"unknown product with any release", Board(0x4242, 0x0010), 2, 2, "new"},
  };
  for (const auto& c : cases) {
    const DeviceReport report = ReportOnDevice(c.record, c.type, c.device_mode);
    std::string judged = report.fit == FirmwareFit::kMatches  ? "matches"
                         : report.fit == FirmwareFit::kTooOld ? "old"
                                                              : "new";
    if (report.flash_mode_active) judged += " flash";
    if (report.pages_enabled) judged += " pages";
    if (report.text.ends_with(kWarning)) judged += " warns";
    EXPECT_EQ(judged, c.judged) << c.name;
  }
}

TEST(DeviceReport, TellsOfTheEepromAndTheNodesAfterTheBoard) {
  using enum NodeStatusAnswer;
  constexpr const char* kOld = "\r\n  WARNING: Firmware update required!\r\n";
  constexpr const char* kOldNode = "\r\n  WARNING: NODE Firmware update required!\r\n";
  const std::string with = "  EEPROM : Detected\r\n", without = "  EEPROM : Not Detected\r\n";
  const struct {
    const char* name;
    std::uint16_t version;
    std::uint32_t type;
    NodeFindings nodes;
    std::string end;  // of the text, after the serial number
    bool pages;
  } cases[]{
      {"all suits", 0x0113, 3, {kWithEeprom, false}, with, true},
      {"no EEPROM", 0x0113, 3, {kWithoutEeprom, false}, without, true},
      {"no answer", 0x0113, 3, {kNone, false}, "", true},
      {"an old node of before, no answer", 0x0113, 3, {kNone, true}, kOldNode, false},
      {"an old node", 0x0113, 3, {kWithEeprom, true}, with + kOldNode, false},
      {"both old", 0x0100, 3, {kWithEeprom, true}, with + kOld + kOldNode, false},
      {"old board", 0x0100, 3, {kWithEeprom, false}, with + kOld, false},
      {"newer board, old node", 0x0120, 3, {kWithoutEeprom, true}, without + kOldNode, false},
      {"loader, both old", 0x0100, 1, {kWithEeprom, true}, with + kOld + kOldNode, false},
      {"firmware of the first kind", 0x0113, 2, {kWithEeprom, false}, with + kOld, false},
  };
  for (const auto& c : cases) {
    const auto report = ReportOnDevice(Board(0x1200, c.version), c.type, 3, c.nodes);
    EXPECT_THAT(report.text, ::testing::EndsWith("  Device Serial Num. : 042\r\n" + c.end))
        << c.name;
    EXPECT_EQ(report.pages_enabled, c.pages) << c.name;
    EXPECT_EQ(report.flash_mode_active, c.type != 3) << c.name;
    EXPECT_EQ(report.fit == FirmwareFit::kTooNew, c.version == 0x0120) << c.name;
  }
}

TEST(DeviceReport, ShowsAVersionInFlashModeOnlyWhenThereIsOne) {
  for (const auto& [queried, present] :
       {std::pair<std::uint16_t, std::uint8_t>{0, 1}, {0x0282, 0}, {0, 0}}) {
    EXPECT_THAT(ReportOnDevice(Board(0x0910, 0x0100, queried, present), 1, 2).text,
                ::testing::HasSubstr("  Flash Version : N/A\r\n"));
  }
  EXPECT_THAT(ReportOnDevice(Board(0x0910, 0x0123, 0x0456), 7, 2).text,
              ::testing::AllOf(::testing::HasSubstr("  Flash Version : 1.23\r\n"),
                               ::testing::Not(::testing::HasSubstr("Loader"))))
      << "another mode is treated as Flash Mode but is no loader";
}

TEST(DeviceReport, ShowsNoGarbageFromTheRecord) {
  DeviceRecord record = Board(0x0910, 0x0282);
  std::memset(record.product_text, 'A', sizeof record.product_text);
  std::memset(record.manufacturer, 'B', sizeof record.manufacturer);
  std::memcpy(record.serial_number, "\x01\xFFZ", 4);
  const DeviceReport report = ReportOnDevice(record, 2, 2);
  EXPECT_THAT(report.text, ::testing::HasSubstr("Device : " + std::string(260, 'A') + "\r\n"));
  EXPECT_THAT(report.text, ::testing::HasSubstr("  Manufacturer : \r\n"))
      << "a text without its end is none";
  EXPECT_EQ(report.serial_number, "\xEF\xBF\xBDZ");
}

}  // namespace
}  // namespace quillon
