// SPDX-License-Identifier: MIT
#include "boards/Calibration.h"

#include <algorithm>

namespace quillon::sim {
namespace {

constexpr std::uint8_t kMeasure = 0x30, kAccept = 0x31, kManual = 0x33;
constexpr std::size_t kAxisAt = kPayloadAt, kValuesAt = kPayloadAt + 1;

void Put16(Answer& answer, std::size_t at, std::uint16_t value) {
  answer[at] = static_cast<std::uint8_t>(value & 0xFF);
  answer[at + 1] = static_cast<std::uint8_t>(value >> 8);
}

std::uint16_t Take16(Request request, std::size_t at) {
  return static_cast<std::uint16_t>(request[at] | request[at + 1] << 8);
}

AxisRange Moved(const AxisRange& stored, unsigned steps) {
  const int by = static_cast<int>(std::min(steps, 10'000U));
  const auto value = [](int v) { return static_cast<std::uint16_t>(std::clamp(v, 0, 0xFFFF)); };
  return {value(stored.min - 16 * by), value(stored.center + 8 * ((by + 2) % 5 - 2)),
          value(stored.max + 16 * by)};
}

}  // namespace

Reply Calibration::Measure(const AxisRanges& stored, std::uint8_t axis) {
  if (!open_ || open_->axis != axis) open_ = Open{axis, 0, {}};
  open_->measured = Moved(stored[axis], open_->readings++);
  Reply reply = Plain(kMeasure);
  Put16(reply.answer, 1, open_->measured.min);
  Put16(reply.answer, 3, open_->measured.center);
  Put16(reply.answer, 5, open_->measured.max);
  return reply;
}

std::optional<Reply> Calibration::Handle(AxisRanges& stored, Request request) {
  const std::uint8_t command = request[kCommandAt], axis = request[kAxisAt];
  if (command < kMeasure || command > kManual) return std::nullopt;
  if (axis >= stored.size()) return Refuse();
  if (command == kMeasure) return Measure(stored, axis);

  const bool is_open = open_ && open_->axis == axis;
  Reply reply = Plain(command);
  if (command == kAccept) {
    if (!is_open) return Refuse();
    stored[axis] = open_->measured;
    reply.changed = true;
  } else if (command == kManual) {
    stored[axis] = {Take16(request, kValuesAt), Take16(request, kValuesAt + 2),
                    Take16(request, kValuesAt + 4)};
    reply.changed = true;
  }
  if (is_open) open_.reset();
  return reply;
}

}  // namespace quillon::sim
