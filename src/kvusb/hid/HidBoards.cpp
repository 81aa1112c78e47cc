// SPDX-License-Identifier: MIT
#include "kvusb/hid/HidBoards.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>

#include "kvusb/CopyText.h"

namespace quillon {
namespace {

using Clock = HidHandle::Clock;
using std::chrono::milliseconds;

constexpr std::size_t kReportBytes = KVUSB_PACKET_BYTES - 1;
constexpr std::uint8_t kNodeCommand = 0x1C;
constexpr std::size_t kFunctionByte = kPayloadByte;  // of a node command

// No system keeps as many reports for a reader that is late.
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

}  // namespace

// A board from its detection until it is closed.
struct HidBoards::Port {
  std::uint32_t number = 0;
  std::string device, arrival;
  std::unique_ptr<HidHandle> handle;
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

Problem BoardHasLeft() { return {KVUSB_PROBLEM_OTHER, "The board is not there any more."}; }

HidBoards::HidBoards(HidOptions options, std::unique_ptr<HidSystem> system)
    : options_(options), system_(std::move(system)) {}

HidBoards::~HidBoards() = default;

HidBoards::Port* HidBoards::PortOf(const DeviceRecord& record) const {
  if (!HasMark(record)) return nullptr;
  std::uint32_t number = 0;
  std::memcpy(&number, record.library_a + kMark.size(), sizeof number);
  const auto found = ports_.find(number);
  return found == ports_.end() ? nullptr : found->second.get();
}

// A board that was detected and not closed since keeps its port.
HidBoards::Port& HidBoards::PortFor(const HidNode& node) {
  for (const auto& [number, port] : ports_)
    if (port->arrival == node.arrival && port->device == node.device) return *port;
  auto port = std::make_unique<Port>();
  port->number = next_number_++;
  port->device = node.device;
  port->arrival = node.arrival;
  port->limit = options_.answer_limit;
  return *ports_.emplace(port->number, std::move(port)).first->second;
}

bool HidBoards::Open(Port& port) {
  if (port.handle) return true;
  OpenedHid opened = system_->Open(port.device);
  port.handle = std::move(opened.handle);
  port.open_error = opened.error;
  return port.handle != nullptr;
}

// Boards that have left without being closed would keep their handles for ever.
void HidBoards::CloseMissing() {
  std::erase_if(ports_, [&](const auto& entry) {
    return std::ranges::none_of(listing_.nodes, [&](const HidNode& node) {
      return node.arrival == entry.second->arrival && node.device == entry.second->device;
    });
  });
}

void HidBoards::Fill(DeviceRecord& record, const HidNode& node, const Port& port) const {
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
  listing_ = system_->List();
  CloseMissing();
  std::uint32_t found = 0;
  for (const HidNode& node : listing_.nodes) {
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
    const int bytes = port->handle->Read(stale, Clock::now());
    if (bytes < 0) return KVUSB_WRITE_FAILED;
    if (bytes == 0) break;
    // An answer that names no request, such as "failed", answers the oldest one.
    if (!port->TakeLate(stale[0]) && !port->given_up.empty())
      port->given_up.erase(port->given_up.begin());
  }
  if (!port->handle->Write(packet)) return KVUSB_WRITE_FAILED;
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
    const int bytes = port->handle->Read(report, deadline);
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
  if (record == nullptr) return listing_.problem;
  const Port* const port = PortOf(*record);
  if (port == nullptr) return BoardHasLeft();
  int error = port->open_error;
  if (!port->handle && error == 0) error = system_->MayOpen(port->device);
  return system_->Explain(port->device, error);
}

}  // namespace quillon
