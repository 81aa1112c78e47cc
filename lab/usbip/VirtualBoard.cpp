// SPDX-License-Identifier: MIT
#include "usbip/VirtualBoard.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quillon::usbip {
namespace {

using Delivery = sim::WiredBoard::Delivery;

constexpr std::size_t kReportBytes = 64;
constexpr std::size_t kMostAnswers = 64;  // kept for a host that fetches none

// How long a board that restarts waits for a host that does not fetch its answer.
constexpr std::chrono::milliseconds kPatience{100};

}  // namespace

VirtualBoard::VirtualBoard(sim::BoardSpec spec,
                           const std::optional<std::filesystem::path>& state_folder)
    : wired_(std::move(spec), state_folder),
      control_(Describe(wired_)),
      waiting_(control_.Descriptors().interfaces.size()) {}

void VirtualBoard::Receive(std::span<const std::uint8_t> bytes, Time now) {
  if (!OnBus()) return;
  reader_.Add(bytes);
  while (OnBus()) {
    const auto request = reader_.Next();
    if (!request) break;
    std::visit([&](const auto& given) { Handle(given, now); }, *request);
  }
  if (reader_.Broken()) Unplug();
  Deliver(now);
}

void VirtualBoard::Handle(const Unlink& unlink, Time) {
  std::size_t taken_back = 0;
  for (Transfers& transfers : waiting_)
    taken_back += std::erase_if(
        transfers, [&](const Transfer& transfer) { return transfer.number == unlink.victim; });
  const auto answer = UnlinkAnswer(unlink.number, taken_back > 0 ? kUnlinked : kDone);
  output_.insert(output_.end(), answer.begin(), answer.end());
}

void VirtualBoard::Handle(const Submit& submit, Time now) {
  if (submit.endpoint == 0) {
    HandleControl(submit, now);
    return;
  }
  const auto& interfaces = control_.Descriptors().interfaces;
  const std::size_t interface = submit.endpoint - 1;
  const bool exists = interface < interfaces.size();
  if (exists && submit.in)
    waiting_[interface].push_back({submit.number, submit.length});
  else if (exists && interfaces[interface].configuration)
    FinishOut(submit, TakeReport(submit.data, now));
  else
    FinishOut(submit, kStall);
}

void VirtualBoard::HandleControl(const Submit& submit, Time now) {
  const Setup setup(submit.setup);
  const bool in = (setup.type & 0x80) != 0;
  auto outcome = in == submit.in ? control_.Handle(setup) : ControlPipe::Outcome{};
  if (outcome.reply == ControlPipe::Reply::kOutputReport) {
    FinishOut(submit, TakeReport(submit.data, now));
  } else if (!submit.in || outcome.reply == ControlPipe::Reply::kStall) {
    FinishOut(submit, outcome.reply == ControlPipe::Reply::kDone ? kDone : kStall);
  } else {
    outcome.data.resize(std::min<std::size_t>(outcome.data.size(), submit.length));
    const auto answer = InAnswer(submit.number, kDone, outcome.data);
    output_.insert(output_.end(), answer.begin(), answer.end());
  }
}

void VirtualBoard::FinishOut(const Submit& submit, std::int32_t status) {
  const auto answer = OutAnswer(submit.number, status, status == kDone ? submit.length : 0);
  output_.insert(output_.end(), answer.begin(), answer.end());
}

std::int32_t VirtualBoard::TakeReport(std::span<const std::uint8_t> report, Time now) {
  if (report.size() != kReportBytes) return kStall;
  std::array<std::uint8_t, 1 + kReportBytes> request{};
  std::ranges::copy(report, request.begin() + 1);
  const sim::WiredBoard::Outcome outcome = wired_.Take(request);
  if (outcome.delivery == Delivery::kNotTaken) return kStall;
  if (outcome.delivery == Delivery::kVanished) {
    // As on a cable that is pulled. The kernel takes a board's interfaces away one by one, and none
    // while a transfer to another is under way: without an answer that would take it 5 s.
    Unplug();
    return kNoDevice;
  }
  busy_until_ = std::max(busy_until_, now) + outcome.busy;
  if (outcome.delivery == Delivery::kAnswer) {
    if (answers_.size() == kMostAnswers) answers_.pop_front();
    answers_.push_back({busy_until_,
                        {outcome.answer.begin(),
                         outcome.answer.begin() + static_cast<std::ptrdiff_t>(outcome.bytes)}});
  }
  if (outcome.restart && !leaves_at_) leaves_at_ = busy_until_ + kPatience;
  return kDone;
}

std::size_t VirtualBoard::ConfigurationInterface() const {
  const auto& interfaces = control_.Descriptors().interfaces;
  const auto found = std::ranges::find_if(interfaces, &UsbInterface::configuration);
  return static_cast<std::size_t>(found - interfaces.begin());
}

bool VirtualBoard::AnswerIsWaitedFor() const {
  return OnBus() && !answers_.empty() && !waiting_.at(ConfigurationInterface()).empty();
}

void VirtualBoard::Deliver(Time now) {
  while (AnswerIsWaitedFor() && answers_.front().due <= now) {
    Transfers& transfers = waiting_.at(ConfigurationInterface());
    Bytes& data = answers_.front().data;
    data.resize(std::min<std::size_t>(data.size(), transfers.front().room));
    const auto answer = InAnswer(transfers.front().number, kDone, data);
    output_.insert(output_.end(), answer.begin(), answer.end());
    transfers.pop_front();
    answers_.pop_front();
  }
  if (leaves_at_ && answers_.empty()) leaves_at_ = std::min(*leaves_at_, now);
}

void VirtualBoard::Advance(Time now) {
  Deliver(now);
  if (leaves_at_ && now >= *leaves_at_) {
    leaves_at_.reset();
    place_ = Place::kRestarting;
    back_at_ = now + wired_.Spec().reboot;
  } else if (back_at_ && now >= *back_at_) {
    ComeBack();
  }
}

void VirtualBoard::ComeBack() {
  back_at_.reset();
  wired_.Restart();
  answers_.clear();
  busy_until_ = {};
  control_ = ControlPipe(Describe(wired_));
  reader_ = {};
  waiting_.assign(control_.Descriptors().interfaces.size(), {});
  output_.clear();
  place_ = Place::kBus;
}

std::optional<VirtualBoard::Time> VirtualBoard::NextStep() const {
  std::optional<Time> next = back_at_ ? back_at_ : leaves_at_;
  if (AnswerIsWaitedFor()) next = std::min(next.value_or(Time::max()), answers_.front().due);
  return next;
}

void VirtualBoard::Unplug() {
  if (place_ == Place::kGone) return;
  place_ = Place::kGone;
  leaves_at_.reset();
  back_at_.reset();
  wired_.Unplug();
}

}  // namespace quillon::usbip
