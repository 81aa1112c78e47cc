// SPDX-License-Identifier: MIT
#include "hidraw/HidrawList.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>
#include <variant>

#include "hidraw/ReportDescriptor.h"
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

// The longest report descriptor that the kernel gives; an attribute is far shorter.
constexpr std::size_t kMostBytes = 4096;

// Reads the files of one node. What is not there or not for this user is empty.
class NodeReader {
 public:
  // The board left while it was read, and half of what it says is worth nothing.
  bool IsGone() const { return gone_; }

  std::string Content(const fs::path& file) {
    auto content = ReadFile(file, kMostBytes);
    if (auto* const bytes = std::get_if<std::string>(&content)) return std::move(*bytes);
    const std::error_code reason = std::get<FileProblem>(content).code;
    if (reason == std::errc::no_such_device || reason == std::errc::io_error) gone_ = true;
    return {};
  }

  // An attribute is a text and a line end.
  std::string Attribute(const fs::path& file) {
    std::string text = Content(file);
    if (text.ends_with('\n')) text.pop_back();
    return text;
  }

 private:
  bool gone_ = false;
};

// "KEY=value" among the lines of a uevent file.
std::string Property(std::string_view lines, std::string_view key) {
  while (!lines.empty()) {
    const std::string_view line = lines.substr(0, lines.find('\n'));
    if (line.starts_with(key) && line.substr(key.size()).starts_with('='))
      return std::string(line.substr(key.size() + 1));
    lines.remove_prefix(std::min(line.size() + 1, lines.size()));
  }
  return {};
}

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

std::optional<std::uint32_t> TypeOf(const std::string& descriptor) {
  const std::vector<std::uint8_t> bytes(descriptor.begin(), descriptor.end());
  for (const CollectionUsage& collection : TopLevelCollections(bytes)) {
    if (collection.page == kConfigurationUsagePage && collection.usage >= 1 &&
        collection.usage <= 3)
      return collection.usage;
  }
  return std::nullopt;
}

// A board that is not on USB has only what its HID device says.
void ReadTexts(HidrawNode& node, const fs::path& hid_folder, NodeReader& reader) {
  std::error_code ignored;
  for (fs::path folder = hid_folder.parent_path(); folder.has_relative_path();
       folder = folder.parent_path()) {
    if (!fs::exists(folder / "idVendor", ignored)) continue;
    node.board = folder.string();
    node.release =
        ParseNumber<std::uint16_t>(reader.Attribute(folder / "bcdDevice"), 16).value_or(0);
    node.product_text = reader.Attribute(folder / "product");
    node.manufacturer = reader.Attribute(folder / "manufacturer");
    node.serial = reader.Attribute(folder / "serial");
    return;
  }
  const std::string properties = reader.Content(hid_folder / "uevent");
  node.board = hid_folder.string();
  node.product_text = Property(properties, "HID_NAME");
  node.serial = Property(properties, "HID_UNIQ");
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
  node.product_id = name->product;
  NodeReader reader;
  node.type = TypeOf(reader.Content(hid_folder / "report_descriptor"));
  ReadTexts(node, hid_folder, reader);
  if (reader.IsGone()) return std::nullopt;
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
