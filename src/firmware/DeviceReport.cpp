// SPDX-License-Identifier: MIT
#include "firmware/DeviceReport.h"

#include "devlink/DeviceText.h"
#include "devlink/Products.h"
#include "firmware/VersionWord.h"

namespace quillon {
namespace {

std::string VersionLines(const DeviceRecord& record, std::uint32_t type) {
  if (type != KVUSB_TYPE_LOADER) {
    return "  Flash Version : " + VersionText(record.version) + "\r\n";
  }
  const bool known = record.queried_version != 0 && record.firmware_present != 0;
  return "  Loader Version : " + VersionText(record.version) + "\r\n" +
         "  Flash Version : " + (known ? VersionText(record.queried_version) : "N/A") + "\r\n";
}

std::string EepromLine(NodeStatusAnswer answer) {
  switch (answer) {
    case NodeStatusAnswer::kWithEeprom:
      return "  EEPROM : Detected\r\n";
    case NodeStatusAnswer::kWithoutEeprom:
      return "  EEPROM : Not Detected\r\n";
    case NodeStatusAnswer::kNone:
      break;
  }
  return {};
}

}  // namespace

DeviceReport ReportOnDevice(const DeviceRecord& record, std::uint32_t type,
                            std::uint32_t device_mode, const std::optional<NodeFindings>& nodes) {
  DeviceReport report;
  report.serial_number = ShownText(record.serial_number);
  // The product id is written like a version on purpose: 0x0910 reads 9.10.
  report.text = "Device : " + ShownText(record.product_text) + "\r\n\r\n" +
                "  Manufacturer : " + TextOrNothing(record.manufacturer) + "\r\n" +
                "  Product ID : " + VersionText(record.product_id) + "\r\n" +
                VersionLines(record, type) +  //
                "  Device Serial Num. : " + report.serial_number + "\r\n";
  if (nodes) report.text += EepromLine(nodes->answer);

  report.flash_mode_active = type != device_mode;
  report.firmware_present = record.firmware_present != 0;
  const std::uint32_t required = LookupRequiredVersion(record.product_id) & 0xFFF0;
  const std::uint32_t release =
      ReleaseOf(report.flash_mode_active ? record.queried_version : record.version);
  const bool nodes_suit = !nodes || !nodes->any_needs_update;
  // A board with an older or newer release can be looked at, but not configured.
  report.pages_enabled = !report.flash_mode_active && release == required && nodes_suit;

  if (release < required || !report.firmware_present) {
    report.fit = FirmwareFit::kTooOld;
    report.text += "\r\n  WARNING: Firmware update required!\r\n";
  } else if (release != required) {
    report.fit = FirmwareFit::kTooNew;
  }
  if (!nodes_suit) report.text += "\r\n  WARNING: NODE Firmware update required!\r\n";
  return report;
}

std::string EmptyDeviceReport(bool of_node_system) {
  return std::string("No devices detected. \r\n\r\n") +
         (of_node_system ? "" : "  Manufacturer : \r\n") +
         "  Product ID : \r\n"
         "  Device Version Num.: \r\n"
         "  Device Serial Num. : \r\n" +
         (of_node_system ? "  EEPROM : \r\n" : "");
}

}  // namespace quillon
