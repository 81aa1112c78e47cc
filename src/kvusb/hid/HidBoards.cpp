// SPDX-License-Identifier: MIT
#include "kvusb/hid/HidBoards.h"

#include <fcntl.h>
#include <hidapi.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>

#include "kvusb/CopyText.h"

namespace quillon {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::size_t kReportBytes = KVUSB_PACKET_BYTES - 1;
constexpr std::uint8_t kNodeCommand = 0x1C;
constexpr std::size_t kFunctionByte = kPayloadByte;  // of a node command

// hidraw keeps no more than 64 reports for a reader that is late.
constexpr int kMostStaleReports = 256;
constexpr std::size_t kMostGivenUp = 64;

// The private bytes of a record: mark and number.
constexpr std::array<char, 8> kMark = {'K', 'V', 'U', 'S', 'B', 'H', 'I', 'D'};

// The answer of a node, through its board, begins with the node's function.
std::uint8_t EchoOf(PacketSpan packet) {
  return packet[packet[kCommandByte] == kNodeCommand ? kFunctionByte : kCommandByte];
}

// The rest of the field after the text is zeros.
void FillText(std::span<char> field, std::string_view text) {
  std::ranges::fill(field, '\0');
  CopyText(text, field.data(), static_cast<std::uint32_t>(field.size()));
}

bool HasMark(const DeviceRecord& record) {
  return std::memcmp(record.library_a, kMark.data(), kMark.size()) == 0;
}

std::string ReasonOf(int error) { return std::generic_category().message(error); }

// hid_read_timeout(), going on where a signal interrupted it. Bytes read, 0 for none in time, -1.
int ReadReport(hid_device* handle, std::span<std::uint8_t> report, Clock::time_point deadline) {
  for (;;) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
    errno = 0;
    const int bytes = hid_read_timeout(handle, report.data(), report.size(),
                                       static_cast<int>(std::max<long long>(left.count(), 0)));
    if (bytes >= 0) return bytes;
    if (errno == EINTR) continue;
    if (errno != 0) return -1;
    // hidapi reports that a board has left before it hands out what the board still said, as a
    // board does that restarts. Without a time limit it just reads, which never waits for a board
    // that has left.
    const int last = hid_read_timeout(handle, report.data(), report.size(), -1);
    return last > 0 ? last : -1;
  }
}

}  // namespace

void HidClose::operator()(hid_device_* handle) const { hid_close(handle); }

OpenedHid OpenHid(const std::string& device) {
  OpenedHid opened;
  opened.handle.reset(hid_open_path(device.c_str()));
  if (opened.handle) return opened;
  // hidapi has the reason as a text only.
  const int file = open(device.c_str(), O_RDWR | O_CLOEXEC);
  opened.error = file < 0 ? errno : EIO;
  if (file >= 0) close(file);
  return opened;
}

int MayOpenHid(const std::string& device) {
  return access(device.c_str(), R_OK | W_OK) == 0 ? 0 : errno;
}

// A board from its detection until it is closed.
struct HidBoards::Port {
  std::uint32_t number = 0;
  std::string device, hid;
  HidHandle handle;
  int open_error = 0;
  std::uint8_t echo = 0;               // with which the last request's answer begins
  milliseconds limit{0};               // for that answer
  bool awaited = false;                // which has not been read yet
  bool unsent = false;                 // the last request did not go out, so it has no answer
  std::vector<std::uint8_t> given_up;  // echoes of answers that may still come, in this order

  // Sorts out a report: true for an answer to a request that was given up. A board answers in
  // order, so an answer says that those before it are lost.
  bool TakeLate(std::uint8_t came) {
    const auto late = std::ranges::find(given_up, came);
    if (awaited && came == echo) {
      // With an earlier request of the same kind it may answer either.
      if (late == given_up.end()) given_up.clear();
      return false;
    }
    if (late == given_up.end()) return false;
    given_up.erase(given_up.begin(), late + 1);
    return true;
  }

  void GiveUp() {
    if (!std::exchange(awaited, false)) return;
    if (given_up.size() == kMostGivenUp) given_up.erase(given_up.begin());
    given_up.push_back(echo);
  }
};

HidBoards::HidBoards(HidOptions options) : options_(std::move(options)) { hid_init(); }

HidBoards::~HidBoards() {
  ports_.clear();
  hid_exit();
}

HidBoards::Port* HidBoards::PortOf(const DeviceRecord& record) const {
  if (!HasMark(record)) return nullptr;
  std::uint32_t number = 0;
  std::memcpy(&number, record.library_a + kMark.size(), sizeof number);
  const auto found = ports_.find(number);
  return found == ports_.end() ? nullptr : found->second.get();
}

// A board that was detected and not closed since keeps its port.
HidBoards::Port& HidBoards::PortFor(const HidrawNode& node) {
  for (const auto& [number, port] : ports_)
    if (port->hid == node.hid && port->device == node.device) return *port;
  auto port = std::make_unique<Port>();
  port->number = next_number_++;
  port->device = node.device;
  port->hid = node.hid;
  port->limit = options_.answer_limit;
  return *ports_.emplace(port->number, std::move(port)).first->second;
}

bool HidBoards::Open(Port& port) const {
  if (port.handle) return true;
  OpenedHid opened = options_.open(port.device);
  port.handle = std::move(opened.handle);
  port.open_error = opened.error;
  return port.handle != nullptr;
}

// Boards that have left without being closed would keep their handles for ever.
void HidBoards::CloseMissing() {
  std::erase_if(ports_, [&](const auto& entry) {
    return std::ranges::none_of(nodes_, [&](const HidrawNode& node) {
      return node.hid == entry.second->hid && node.device == entry.second->device;
    });
  });
}

void HidBoards::Fill(DeviceRecord& record, const HidrawNode& node, const Port& port) const {
  std::memset(record.library_a, 0, sizeof record.library_a);
  std::memset(record.library_b, 0, sizeof record.library_b);
  std::memcpy(record.library_a, kMark.data(), kMark.size());
  std::memcpy(record.library_a + kMark.size(), &port.number, sizeof port.number);
  record.product_id = node.product_id;
  record.version = node.release;
  FillText(record.product_text, node.product_text);
  FillText(record.manufacturer, node.manufacturer);
  FillText(record.serial_number, node.serial);
}

std::int32_t HidBoards::DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                                  std::uint32_t type) {
  nodes_ = ListHidrawNodes(list_error_, nodes_, options_.sys);
  CloseMissing();
  std::uint32_t found = 0;
  for (const HidrawNode& node : nodes_) {
    if (node.type != type) continue;
    if (found == free.size()) break;
    Fill(free[found++], node, PortFor(node));
  }
  if (found == 0) return 0;
  count = found;
  return 1;
}

std::int32_t HidBoards::WriteData(DeviceRecord& record, PacketSpan packet) {
  Port* const port = PortOf(record);
  if (port == nullptr) return KVUSB_WRITE_FAILED;
  port->unsent = true;
  if (!Open(*port)) return KVUSB_WRITE_FAILED;
  if (packet[0] != 0) return KVUSB_WRITE_FAILED;  // a report number that the boards do not have

  // What is there by now answers an earlier question.
  port->GiveUp();
  std::array<std::uint8_t, kReportBytes> stale{};
  for (int i = 0; i < kMostStaleReports; ++i) {
    const int bytes = hid_read_timeout(port->handle.get(), stale.data(), stale.size(), 0);
    if (bytes < 0) return KVUSB_WRITE_FAILED;
    if (bytes == 0) break;
    // An answer that names no request, such as "failed", answers the oldest one.
    if (!port->TakeLate(stale[0]) && !port->given_up.empty())
      port->given_up.erase(port->given_up.begin());
  }
  if (hid_write(port->handle.get(), packet.data(), packet.size()) < 0) return KVUSB_WRITE_FAILED;
  port->unsent = false;
  port->awaited = true;
  port->echo = EchoOf(packet);
  port->limit = IsErase(packet) ? options_.erase_limit : options_.answer_limit;
  return KVUSB_OK;
}

std::int32_t HidBoards::ReadData(DeviceRecord& record, PacketSpan packet) {
  Port* const port = PortOf(record);
  if (port == nullptr || port->unsent || !Open(*port)) return KVUSB_READ_FAILED;
  const auto deadline = Clock::now() + port->limit;
  std::array<std::uint8_t, kReportBytes> report{};
  for (;;) {
    const int bytes = ReadReport(port->handle.get(), report, deadline);
    if (bytes < 0) return KVUSB_READ_FAILED;
    if (bytes == 0) return KVUSB_READ_TIMEOUT;
    if (port->TakeLate(report[0])) continue;
    port->awaited = false;
    std::copy_n(report.begin(), bytes, packet.begin());
    return KVUSB_OK;
  }
}

std::int32_t HidBoards::CloseDevices(std::span<DeviceRecord> records) {
  bool closed = true;
  for (const DeviceRecord& record : records) {
    if (const Port* const port = PortOf(record)) {
      ports_.erase(port->number);
    } else if (!HasMark(record)) {
      closed = false;  // never a record of ours; one of a board that has gone is closed already
    }
  }
  return closed ? 1 : 0;
}

Problem HidBoards::DescribeProblem(const DeviceRecord* record) {
  if (record == nullptr) {
    if (!list_error_) return {};
    return {KVUSB_PROBLEM_OTHER, "Boards cannot be looked for: the kernel's list of HID devices, " +
                                     (options_.sys / "class" / "hidraw").string() +
                                     ", cannot be read: " + list_error_.message() + "."};
  }
  const Port* const port = PortOf(*record);
  int error = port == nullptr ? ENODEV : port->open_error;
  if (port != nullptr && !port->handle && error == 0) error = options_.may_open(port->device);
  switch (error) {
    case 0:
      return {};
    case EACCES:
      return {KVUSB_PROBLEM_PERMISSION,
              "Linux does not let you open " + port->device + " (" + ReasonOf(error) + ")."};
    case EBUSY:
      return {KVUSB_PROBLEM_IN_USE, "Another program holds " + port->device + "."};
    case ENODEV:
    case ENXIO:
      return {KVUSB_PROBLEM_OTHER, "The board is not there any more."};
    default:
      return {KVUSB_PROBLEM_OTHER, port->device + " cannot be opened: " + ReasonOf(error) + "."};
  }
}

}  // namespace quillon
