// SPDX-License-Identifier: MIT
#include "pages/common/FlashPace.h"

namespace quillon {
namespace {

std::string Clock(std::chrono::seconds time) {
  const auto seconds = time.count() % 60;
  return std::to_string(time.count() / 60) + (seconds < 10 ? ":0" : ":") + std::to_string(seconds);
}

}  // namespace

void FlashPace::Begin(int records, Time now) {
  records_ = records;
  begun_ = drawn_ = now;
}

bool FlashPace::IsDue(int position, Time now) {
  if (position > 1 && position != records_ && now - drawn_ < kInterval) return false;
  drawn_ = now;
  return true;
}

std::string FlashPace::Describe(int position, Time now) const {
  const Time elapsed = now - begun_;
  std::string text = Clock(std::chrono::floor<std::chrono::seconds>(elapsed));
  if (position > 0 && position < records_) {
    const Time left = elapsed * (records_ - position) / position;
    text += ", about " + Clock(std::chrono::ceil<std::chrono::seconds>(left)) + " left";
  }
  return text;
}

}  // namespace quillon
