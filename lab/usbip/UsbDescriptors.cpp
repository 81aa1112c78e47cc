// SPDX-License-Identifier: MIT
#include "usbip/UsbDescriptors.h"

#include <utf8.h>

#include "boards/HidInterfaces.h"

namespace quillon::usbip {
namespace {

enum : std::uint8_t {
  kDevice = 1,
  kConfiguration = 2,
  kString = 3,
  kInterface = 4,
  kEndpoint = 5,
  kHid = 0x21,
  kReport = 0x22,
};

constexpr std::size_t kMostUnits = 126;  // a descriptor's length is one byte, and even
constexpr char16_t kReplacement = 0xFFFD;

constexpr std::uint8_t Low(std::size_t word) { return static_cast<std::uint8_t>(word & 0xFF); }
constexpr std::uint8_t High(std::size_t word) {
  return static_cast<std::uint8_t>((word >> 8) & 0xFF);
}

void Append(Bytes& to, const Bytes& bytes) { to.insert(to.end(), bytes.begin(), bytes.end()); }

// Each byte of what is no UTF-8 becomes a character of its own.
std::u16string Utf16(std::string_view text) {
  std::u16string units;
  while (!text.empty()) {
    const std::string_view valid = text.substr(0, utf8::find_invalid(text));
    units += utf8::utf8to16(valid);
    text.remove_prefix(valid.size());
    if (text.empty()) break;
    units += kReplacement;
    text.remove_prefix(1);
  }
  return units;
}

Bytes EndpointDescriptor(std::size_t address) {
  constexpr std::uint8_t kInterrupt = 3, kReportBytes = 64, kEachMillisecond = 1;
  return {7, kEndpoint, Low(address), kInterrupt, kReportBytes, 0, kEachMillisecond};
}

Bytes InterfaceDescriptors(const UsbInterface& interface, std::size_t number) {
  constexpr std::uint8_t kHidClass = 3;
  const std::uint8_t endpoints = interface.configuration ? 2 : 1;
  Bytes bytes = {9, kInterface, Low(number), 0, endpoints, kHidClass, 0, 0, 0};
  Append(bytes, interface.hid);
  Append(bytes, EndpointDescriptor(0x80 | (number + 1)));
  if (interface.configuration) Append(bytes, EndpointDescriptor(number + 1));
  return bytes;
}

UsbInterface DescribeInterface(const sim::HidInterface& interface) {
  const auto& report = interface.report_descriptor;
  return {.hid = {9, kHid, 0x11, 0x01, 0, 1, kReport, Low(report.size()), High(report.size())},
          .report = report,
          .configuration = interface.configuration};
}

Bytes ConfigurationDescriptors(const std::vector<UsbInterface>& interfaces) {
  constexpr std::uint8_t kBusPowered = 0x80, kHundredMilliamperes = 50;
  Bytes rest;
  for (std::size_t number = 0; number < interfaces.size(); ++number)
    Append(rest, InterfaceDescriptors(interfaces[number], number));
  const std::size_t total = 9 + rest.size();
  Bytes bytes = {9, kConfiguration, Low(total),          High(total), Low(interfaces.size()), 1,
                 0, kBusPowered,    kHundredMilliamperes};
  Append(bytes, rest);
  return bytes;
}

}  // namespace

Bytes StringDescriptor(std::string_view text) {
  std::u16string units = Utf16(text);
  if (units.size() > kMostUnits) {
    const bool splits = units[kMostUnits - 1] >= 0xD800 && units[kMostUnits - 1] < 0xDC00;
    units.resize(splits ? kMostUnits - 1 : kMostUnits);
  }
  Bytes bytes = {Low(2 + 2 * units.size()), kString};
  for (const char16_t unit : units) Append(bytes, {Low(unit), High(unit)});
  return bytes;
}

UsbDescriptors Describe(const sim::WiredBoard& board) {
  const sim::BoardSpec& spec = board.Spec();
  const std::uint16_t version = board.TheBoard().VersionWord();
  UsbDescriptors all;
  constexpr std::uint8_t kUsEnglish[] = {0x09, 0x04};
  all.strings.push_back({4, kString, kUsEnglish[0], kUsEnglish[1]});
  // A text that is empty has no string; its index is 0 then.
  const auto add = [&](const std::string& text) -> std::uint8_t {
    if (text.empty()) return 0;
    all.strings.push_back(StringDescriptor(text));
    return Low(all.strings.size() - 1);
  };
  const std::uint8_t manufacturer = add(spec.manufacturer), product = add(spec.product_text);
  const std::uint8_t serial = add(board.SerialText());
  all.device = {18,
                kDevice,
                0x00,
                0x02,
                0,
                0,
                0,
                64,
                Low(sim::kUsbVendor),
                High(sim::kUsbVendor),
                Low(spec.product),
                High(spec.product),
                Low(version),
                High(version),
                manufacturer,
                product,
                serial,
                1};
  for (const auto& interface : sim::HidInterfacesOf(board.TheBoard()))
    all.interfaces.push_back(DescribeInterface(interface));
  all.configuration = ConfigurationDescriptors(all.interfaces);
  return all;
}

std::optional<Bytes> UsbDescriptors::Find(std::uint8_t type, std::uint8_t index) const {
  if (type == kDevice && index == 0) return device;
  if (type == kConfiguration && index == 0) return configuration;
  if (type == kString && index < strings.size()) return strings[index];
  return std::nullopt;
}

std::optional<Bytes> UsbDescriptors::FindOfInterface(std::uint8_t type,
                                                     std::uint16_t interface) const {
  if (interface >= interfaces.size()) return std::nullopt;
  if (type == kHid) return interfaces[interface].hid;
  if (type == kReport) return interfaces[interface].report;
  return std::nullopt;
}

}  // namespace quillon::usbip
