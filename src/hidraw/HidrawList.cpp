// SPDX-License-Identifier: MIT
#include "hidraw/HidrawList.h"

#include <libudev.h>

#include <algorithm>
#include <charconv>
#include <memory>
#include <string_view>
#include <utility>
#include <variant>

#include "hidraw/ReportDescriptor.h"
#include "kvusb/UsbNumbers.h"
#include "storage/ReadFile.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

template <typename Number>
std::optional<Number> ParseNumber(std::string_view text, int base) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

struct Release {
  void operator()(udev* context) const { udev_unref(context); }
  void operator()(udev_device* device) const { udev_device_unref(device); }
};

std::string Text(const char* text) { return text != nullptr ? text : ""; }

// "0003:4C7E:0910.0007": bus, vendor, product, number.
struct HidName {
  std::uint16_t vendor = 0, product = 0;
};

std::optional<HidName> ParseHidName(std::string_view name) {
  if (name.size() < 15 || name[4] != ':' || name[9] != ':' || name[14] != '.') return std::nullopt;
  const auto vendor = ParseNumber<std::uint16_t>(name.substr(5, 4), 16);
  const auto product = ParseNumber<std::uint16_t>(name.substr(10, 4), 16);
  if (!vendor || !product) return std::nullopt;
  return HidName{*vendor, *product};
}

// The HID device's folder, two above the hidraw node's own.
fs::path HidFolder(const fs::path& node) { return node.parent_path().parent_path(); }

// Nothing if the board left while it was read; empty if there is none. libudev would cut it at its
// first zero byte.
std::optional<std::string> ReadDescriptor(const fs::path& hid_folder) {
  constexpr std::size_t kMostBytes = 4096;  // that the kernel gives
  const auto content = ReadFile(hid_folder / "report_descriptor", kMostBytes);
  if (const auto* const bytes = std::get_if<std::string>(&content)) return *bytes;
  const std::error_code reason = std::get<FileProblem>(content).code;
  const bool gone = reason == std::errc::no_such_device || reason == std::errc::io_error;
  return gone ? std::nullopt : std::optional<std::string>("");
}

std::optional<std::uint32_t> TypeOf(const std::string& descriptor) {
  const std::vector<std::uint8_t> bytes(descriptor.begin(), descriptor.end());
  for (const CollectionUsage& collection : TopLevelCollections(bytes)) {
    if (collection.page == kConfigurationUsagePage && IsDeviceType(collection.usage))
      return collection.usage;
  }
  return std::nullopt;
}

// A board that is not on USB has only what its HID device says.
void ReadTexts(HidrawNode& node) {
  const std::unique_ptr<udev, Release> context(udev_new());
  const std::unique_ptr<udev_device, Release> device(
      udev_device_new_from_syspath(context.get(), node.folder.c_str()));
  if (!device) return;
  const auto parent = [&](const char* subsystem, const char* type) {
    return udev_device_get_parent_with_subsystem_devtype(device.get(), subsystem, type);
  };
  if (udev_device* const usb = parent("usb", "usb_device")) {
    const auto attribute = [&](const char* name) {
      return Text(udev_device_get_sysattr_value(usb, name));
    };
    node.board = Text(udev_device_get_syspath(usb));
    node.release = ParseNumber<std::uint16_t>(attribute("bcdDevice"), 16).value_or(0);
    node.product_text = attribute("product");
    node.manufacturer = attribute("manufacturer");
    node.serial = attribute("serial");
  } else if (udev_device* const hid = parent("hid", nullptr)) {
    node.product_text = Text(udev_device_get_property_value(hid, "HID_NAME"));
    node.serial = Text(udev_device_get_property_value(hid, "HID_UNIQ"));
  }
}

std::string DeviceOf(const fs::path& folder) { return "/dev/" + folder.filename().string(); }

// hidraw2 before hidraw10.
bool ComesBefore(const fs::path& a, const fs::path& b) {
  const std::string left = a.filename().string(), right = b.filename().string();
  return left.size() != right.size() ? left.size() < right.size() : left < right;
}

}  // namespace

std::optional<HidrawNode> ReadHidrawNode(const fs::path& folder) {
  std::error_code error;
  const fs::path real = fs::canonical(folder, error);
  if (error) return std::nullopt;
  const fs::path hid_folder = HidFolder(real);
  HidrawNode node;
  node.hid = hid_folder.filename().string();
  const auto name = ParseHidName(node.hid);
  if (!name || name->vendor != kUsbVendorId) return std::nullopt;
  node.folder = real.string();
  node.device = DeviceOf(real);
  node.board = hid_folder.string();  // unless it is on USB
  node.product_id = name->product;
  const auto descriptor = ReadDescriptor(hid_folder);
  if (!descriptor) return std::nullopt;
  node.type = TypeOf(*descriptor);
  if (node.type) ReadTexts(node);
  // The USB device outlives the node, so its texts are whole if the node is still there.
  if (!fs::exists(real, error)) return std::nullopt;
  return node;
}

std::vector<HidrawNode> ListHidrawNodes(std::error_code& error,
                                        const std::vector<HidrawNode>& known, const fs::path& sys) {
  const fs::path list = sys / "class" / "hidraw";
  struct Entry {
    fs::path path;
    std::string hid;
  };
  std::vector<Entry> ours;
  fs::directory_iterator entries(list, error);
  for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
    std::error_code gone;
    const fs::path target = fs::read_symlink(entries->path(), gone);
    const std::string hid = HidFolder(target).filename().string();
    const auto name = ParseHidName(hid);
    if (!gone && name && name->vendor == kUsbVendorId) ours.push_back({entries->path(), hid});
  }
  std::ranges::sort(ours, ComesBefore, &Entry::path);
  std::vector<HidrawNode> nodes;
  for (const Entry& entry : ours) {
    // The HID device outlives its node where a driver is changed.
    const std::string device = DeviceOf(entry.path);
    const auto same = std::ranges::find_if(known, [&](const HidrawNode& node) {
      return node.hid == entry.hid && node.device == device;
    });
    if (same != known.end()) {
      nodes.push_back(*same);
    } else if (auto node = ReadHidrawNode(entry.path)) {
      nodes.push_back(std::move(*node));
    }
  }
  return nodes;
}

}  // namespace quillon
