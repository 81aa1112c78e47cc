// SPDX-License-Identifier: MIT
#include "testing/link/FaultyLibrary.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "kvusb/HidPacket.h"

namespace quillon::testing {
namespace {

HidPacket CopyOf(std::span<const std::uint8_t, KVUSB_PACKET_BYTES> packet) {
  HidPacket copy;
  std::copy(packet.begin(), packet.end(), copy.begin());
  return copy;
}

}  // namespace

FaultyLibrary::~FaultyLibrary() {
  EXPECT_FALSE(DropUnstruck()) << "A fault was asked for that never struck.";
}

void FaultyLibrary::FailWrite(Which which, std::int32_t code) {
  faults_.push_back({Side::kWrite, which, [code](PacketSpan, const Pass&) { return code; }});
}

void FaultyLibrary::FailRead(Which which, std::int32_t code) {
  faults_.push_back({Side::kRead, which, [code](PacketSpan packet, const Pass& pass) {
                       HidPacket lost = CopyOf(packet);
                       pass(lost);
                       return code;
                     }});
}

void FaultyLibrary::AnswerShort(Which which, std::size_t bytes) {
  faults_.push_back({Side::kRead, which, [bytes](PacketSpan packet, const Pass& pass) {
                       HidPacket answer = CopyOf(packet);
                       const std::int32_t result = pass(answer);
                       std::copy_n(answer.begin(), std::min(bytes, answer.size()), packet.begin());
                       return result;
                     }});
}

void FaultyLibrary::AnswerWithEcho(Which which, std::uint8_t echo) {
  faults_.push_back({Side::kRead, which, [echo](PacketSpan packet, const Pass& pass) {
                       const std::int32_t result = pass(packet);
                       packet[kEchoByte] = echo;
                       return result;
                     }});
}

void FaultyLibrary::BeforeWrite(Which which, std::function<void()> callback) {
  faults_.push_back(
      {Side::kWrite, which, [run = std::move(callback)](PacketSpan packet, const Pass& pass) {
         run();
         return pass(packet);
       }});
}

void FaultyLibrary::BeforeRead(Which which, std::function<void()> callback) {
  faults_.push_back(
      {Side::kRead, which, [run = std::move(callback)](PacketSpan packet, const Pass& pass) {
         run();
         return pass(packet);
       }});
}

bool FaultyLibrary::DropUnstruck() {
  return std::erase_if(faults_, [](const Fault& f) { return f.seen < f.which.nth; }) > 0;
}

std::int32_t FaultyLibrary::WriteData(DeviceRecord& record, PacketSpan packet) {
  command_ = packet[kCommandByte];
  return Run(Side::kWrite, packet, [&](PacketSpan p) { return Inner().WriteData(record, p); });
}

std::int32_t FaultyLibrary::ReadData(DeviceRecord& record, PacketSpan packet) {
  return Run(Side::kRead, packet, [&](PacketSpan p) { return Inner().ReadData(record, p); });
}

// Wraps the call into all faults that strike it, the first one asked for outermost.
std::int32_t FaultyLibrary::Run(Side side, PacketSpan packet, Pass call) {
  for (auto fault = faults_.rbegin(); fault != faults_.rend(); ++fault) {
    const Which& which = fault->which;
    if (fault->side != side || which.command.value_or(command_) != command_) continue;
    ++fault->seen;
    if (fault->seen == which.nth || (which.onwards && fault->seen > which.nth)) {
      call = [act = fault->act, inner = std::move(call)](PacketSpan p) { return act(p, inner); };
    }
  }
  return call(packet);
}

}  // namespace quillon::testing
