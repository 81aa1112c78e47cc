// SPDX-License-Identifier: MIT
#include "sim/Bus.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <span>
#include <system_error>
#include <thread>
#include <utility>

#include "boards/WiredBoard.h"

namespace quillon::sim {
namespace {

using std::chrono::microseconds;
using Delivery = WiredBoard::Delivery;

constexpr microseconds kReadLimit = std::chrono::seconds(2), kEraseLimit = std::chrono::seconds(10);
constexpr std::uint8_t kErase = 8, kNodeCommand = 0x1C;
constexpr std::size_t kFunctionAt = 6;

// The private bytes of a record: mark, number, and the id, padded with zeros.
constexpr std::array<char, 8> kMark = {'K', 'V', 'U', 'S', 'B', 'S', 'I', 'M'};
constexpr std::size_t kNumberAt = kMark.size(), kIdAt = kNumberAt + sizeof(std::uint32_t);
constexpr std::size_t kIdBytes = sizeof(DeviceRecord::library_a) - kIdAt;

// A text that fills its field has no zero at its end, on purpose.
void FillText(std::span<char> field, std::string_view text) {
  std::ranges::fill(field, '\0');
  std::ranges::copy(text.substr(0, field.size()), field.begin());
}

bool IsErase(Request request) {
  return request[kCommandAt] == kErase ||
         (request[kCommandAt] == kNodeCommand && request[kFunctionAt] == kErase);
}

microseconds MachineNow() {
  return std::chrono::duration_cast<microseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
}

}  // namespace

// A place on the bus: the board, and what the library knows of it.
struct Bus::Slot {
  Slot(BoardSpec spec, const std::optional<std::filesystem::path>& state_folder)
      : wired(std::move(spec), state_folder), plugged(wired.Spec().plugged) {}

  WiredBoard wired;
  bool plugged;
  std::uint32_t number = 1;
  microseconds back_at{0};
  std::optional<WiredBoard::Outcome> pending;  // an answer on its way
  microseconds limit{0};                       // for which a reader waits for it

  // The records made so far are dead from here on.
  void Disown() {
    ++number;
    pending.reset();
  }
};

Bus::Bus(Rig rig, BusOptions options) : options_(std::move(options)) {
  if (!options_.now) options_.now = MachineNow;
  if (!options_.sleep)
    options_.sleep = [](microseconds duration) { std::this_thread::sleep_for(duration); };
  if (options_.state_folder) {
    std::error_code error;
    std::filesystem::create_directories(*options_.state_folder, error);
    if (error) {
      if (options_.problem.empty())
        options_.problem = "The folder " + options_.state_folder->string() +
                           " for the state of the boards cannot be made: " + error.message() +
                           ". Settings last until the program ends.";
      options_.state_folder.reset();
    }
  }
  for (BoardSpec& spec : rig.boards) TakeIn(std::move(spec));
}

Bus::~Bus() = default;

void Bus::TakeIn(BoardSpec spec) {
  slots_.push_back(std::make_unique<Slot>(std::move(spec), options_.state_folder));
}

Bus::Slot* Bus::SlotOf(std::string_view id) const {
  const auto found =
      std::ranges::find_if(slots_, [&](const auto& slot) { return slot->wired.Spec().id == id; });
  return found == slots_.end() ? nullptr : found->get();
}

bool Bus::IsPresent(const Slot& slot) const {
  return slot.plugged && options_.now() >= slot.back_at;
}

Bus::Slot* Bus::LiveSlot(const DeviceRecord& record) const {
  const std::uint8_t* bytes = record.library_a;
  if (std::memcmp(bytes, kMark.data(), kMark.size()) != 0) return nullptr;
  std::uint32_t number = 0;
  std::memcpy(&number, bytes + kNumberAt, sizeof number);
  std::string id(reinterpret_cast<const char*>(bytes + kIdAt), kIdBytes);
  id.resize(std::min(id.find('\0'), id.size()));
  Slot* slot = SlotOf(id);
  return slot != nullptr && slot->number == number && IsPresent(*slot) ? slot : nullptr;
}

void Bus::Fill(DeviceRecord& record, const Slot& slot) const {
  const BoardSpec& spec = slot.wired.Spec();
  std::memset(record.library_a, 0, sizeof record.library_a);
  std::memcpy(record.library_a, kMark.data(), kMark.size());
  std::memcpy(record.library_a + kNumberAt, &slot.number, sizeof slot.number);
  std::memcpy(record.library_a + kIdAt, spec.id.data(), std::min(spec.id.size(), kIdBytes));
  record.product_id = spec.product;
  record.version = slot.wired.TheBoard().VersionWord();
  FillText(record.product_text, spec.product_text);
  FillText(record.manufacturer, spec.manufacturer);
  FillText(record.serial_number, slot.wired.SerialText());
}

std::int32_t Bus::DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                            std::uint32_t type) {
  FinishRestarts();
  std::uint32_t found = 0;
  for (const auto& slot : slots_) {
    if (!IsPresent(*slot) || slot->wired.TheBoard().Type() != type) continue;
    if (found == free.size()) break;
    Fill(free[found++], *slot);
  }
  if (found == 0) return 0;
  count = found;
  return 1;
}

void Bus::Wait(microseconds duration) const {
  if (options_.latency.count() > 0 && duration.count() > 0) options_.sleep(duration);
}

std::int32_t Bus::WriteData(DeviceRecord& record, PacketSpan packet) {
  FinishRestarts();
  Slot* slot = LiveSlot(record);
  if (slot == nullptr) return KVUSB_WRITE_FAILED;
  slot->pending.reset();
  if (packet[0] != 0) return KVUSB_WRITE_FAILED;  // a report number that the boards do not have
  Wait(options_.latency / 2);

  const Request request(packet);
  const WiredBoard::Outcome outcome = slot->wired.Take(request);
  if (outcome.delivery == Delivery::kNotTaken) return KVUSB_WRITE_FAILED;
  if (outcome.delivery == Delivery::kVanished) {
    Unplug(slot->wired.Spec().id);
    return KVUSB_WRITE_FAILED;
  }
  slot->pending = outcome;
  slot->limit = IsErase(request) ? kEraseLimit : kReadLimit;
  return KVUSB_OK;
}

std::int32_t Bus::ReadData(DeviceRecord& record, PacketSpan packet) {
  Slot* slot = LiveSlot(record);
  if (slot == nullptr) return KVUSB_READ_FAILED;
  if (!slot->pending) {
    Wait(kReadLimit);
    return KVUSB_READ_TIMEOUT;
  }
  const WiredBoard::Outcome pending = *std::exchange(slot->pending, std::nullopt);
  const bool stalled = pending.delivery == Delivery::kStalled;
  Wait(options_.latency / 2 + (stalled ? slot->limit : pending.busy));
  if (pending.delivery == Delivery::kAnswer)
    std::copy_n(pending.answer.begin(), pending.bytes, packet.begin());
  if (pending.restart) Restart(*slot);
  if (stalled) return KVUSB_READ_TIMEOUT;
  return pending.delivery == Delivery::kAnswer ? KVUSB_OK : KVUSB_READ_FAILED;
}

std::int32_t Bus::CloseDevices(std::span<DeviceRecord> records) {
  FinishRestarts();
  bool closed = true;
  for (const DeviceRecord& record : records) {
    Slot* slot = LiveSlot(record);
    if (slot != nullptr) {
      if (slot->wired.ClosingFails()) closed = false;
      slot->Disown();
    } else if (std::memcmp(record.library_a, kMark.data(), kMark.size()) != 0) {
      closed = false;  // never a record of ours; one of a board that has gone is closed already
    }
  }
  return closed ? 1 : 0;
}

bool Bus::SetDeviceChangeHandler(DeviceChangeHandler handler, void* context) {
  handler_ = handler;
  context_ = context;
  return true;
}

// In the mixed case that real paths come in.
void Bus::Announce(std::uint32_t event, const Slot& slot) const {
  if (handler_ == nullptr) return;
  std::array<char, 40> front{};
  std::snprintf(front.data(), front.size(), R"(\\?\HID#Vid_4C7E&Pid_%04x#)",
                static_cast<unsigned>(slot.wired.Spec().product));
  const std::string path = front.data() + slot.wired.TheBoard().State().serial;
  handler_(event, KVUSB_DEVICE_INTERFACE, path.c_str(), context_);
}

void Bus::Restart(Slot& slot) {
  slot.Disown();
  if (options_.latency.count() > 0) slot.back_at = options_.now() + slot.wired.Spec().reboot;
  Announce(KVUSB_EVENT_REMOVAL, slot);
  slot.wired.Restart();
  Announce(KVUSB_EVENT_ARRIVAL, slot);
}

// A board whose answer nobody reads restarts all the same.
void Bus::FinishRestarts() {
  for (const auto& slot : slots_)
    if (slot->pending && slot->pending->restart) Restart(*slot);
}

Problem Bus::DescribeProblem(const DeviceRecord* record) {
  const Slot* slot = record == nullptr ? nullptr : LiveSlot(*record);
  std::string sentence = record == nullptr ? options_.problem
                         : slot == nullptr ? "The board is not there any more."
                                           : slot->wired.Problem();
  return {sentence.empty() ? KVUSB_PROBLEM_NONE : KVUSB_PROBLEM_OTHER, std::move(sentence)};
}

Board* Bus::Find(std::string_view id) {
  Slot* slot = SlotOf(id);
  return slot == nullptr ? nullptr : &slot->wired.TheBoard();
}

void Bus::Plug(std::string_view id) {
  Slot* slot = SlotOf(id);
  if (slot == nullptr || slot->plugged) return;
  slot->plugged = true;
  Announce(KVUSB_EVENT_ARRIVAL, *slot);
}

void Bus::Unplug(std::string_view id) {
  Slot* slot = SlotOf(id);
  if (slot == nullptr || !slot->plugged) return;
  slot->plugged = false;
  slot->Disown();
  Announce(KVUSB_EVENT_REMOVAL, *slot);
  slot->wired.Unplug();
}

void Bus::ProvokeFault(std::string_view id, const Fault& fault) {
  if (Slot* slot = SlotOf(id)) slot->wired.Provoke(fault);
}

}  // namespace quillon::sim
