// SPDX-License-Identifier: MIT
#include "kvusb/hid/LinuxHid.h"

#include <fcntl.h>
#include <hidapi.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace quillon {
namespace {

using std::chrono::milliseconds;

struct HidClose {
  void operator()(hid_device* device) const { hid_close(device); }
};
using HidDevice = std::unique_ptr<hid_device, HidClose>;

class HidapiHandle final : public HidHandle {
 public:
  explicit HidapiHandle(HidDevice device) : device_(std::move(device)) {}

  // The kernel itself gives up after some seconds.
  bool Write(PacketSpan packet) override {
    return hid_write(device_.get(), packet.data(), packet.size()) >= 0;
  }

  // hid_read_timeout(), going on where a signal interrupted it.
  int Read(std::span<std::uint8_t> report, Clock::time_point deadline) override {
    for (;;) {
      const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
      errno = 0;
      const int bytes = hid_read_timeout(device_.get(), report.data(), report.size(),
                                         static_cast<int>(std::max<long long>(left.count(), 0)));
      if (bytes >= 0) return bytes;
      if (errno == EINTR) continue;
      if (errno != 0) return -1;
      // hidapi reports that a board has left before it hands out what the board still said, as a
      // board does that restarts. Without a time limit it just reads, which never waits for a board
      // that has left.
      const int last = hid_read_timeout(device_.get(), report.data(), report.size(), -1);
      return last > 0 ? last : -1;
    }
  }

 private:
  HidDevice device_;
};

HidNode NodeOf(const HidrawNode& node) {
  return {.device = node.device,
          .arrival = node.hid,
          .type = *node.type,
          .product_id = node.product_id,
          .release = node.release,
          .product_text = node.product_text,
          .manufacturer = node.manufacturer,
          .serial = node.serial};
}

std::string ReasonOf(int error) { return std::generic_category().message(error); }

}  // namespace

LinuxHid::LinuxHid(std::filesystem::path sys) : sys_(std::move(sys)) { hid_init(); }

LinuxHid::~LinuxHid() { hid_exit(); }

HidListing LinuxHid::List() {
  std::error_code error;
  known_ = ListHidrawNodes(error, known_, sys_);
  HidListing listing;
  for (const HidrawNode& node : known_)
    if (node.type) listing.nodes.push_back(NodeOf(node));
  if (error) {
    listing.problem = {KVUSB_PROBLEM_OTHER,
                       "Boards cannot be looked for: the kernel's list of HID devices, " +
                           (sys_ / "class" / "hidraw").string() +
                           ", cannot be read: " + error.message() + "."};
  }
  return listing;
}

OpenedHid LinuxHid::Open(const std::string& device) {
  if (HidDevice opened{hid_open_path(device.c_str())})
    return {std::make_unique<HidapiHandle>(std::move(opened)), 0};
  // hidapi has the reason as a text only.
  const int file = open(device.c_str(), O_RDWR | O_CLOEXEC);
  const int error = file < 0 ? errno : EIO;
  if (file >= 0) close(file);
  return {nullptr, error};
}

int LinuxHid::MayOpen(const std::string& device) {
  return access(device.c_str(), R_OK | W_OK) == 0 ? 0 : errno;
}

Problem LinuxHid::Explain(const std::string& device, int error) const {
  switch (error) {
    case 0:
      return {};
    case EACCES:
      return {KVUSB_PROBLEM_PERMISSION,
              "Linux does not let you open " + device + " (" + ReasonOf(error) + ")."};
    case EBUSY:
      return {KVUSB_PROBLEM_IN_USE, "Another program holds " + device + "."};
    case ENODEV:
    case ENXIO:
      return BoardHasLeft();
    default:
      return {KVUSB_PROBLEM_OTHER, device + " cannot be opened: " + ReasonOf(error) + "."};
  }
}

std::unique_ptr<HidSystem> ThisSystem() { return std::make_unique<LinuxHid>(); }

}  // namespace quillon
