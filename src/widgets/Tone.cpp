// SPDX-License-Identifier: MIT
#include "widgets/Tone.h"

#include <algorithm>
#include <cmath>

namespace quillon {
namespace {

constexpr double kReadable = 4.5;
constexpr double kDarkest = 0.12;  // black bands would look like holes beside a dark grey window
constexpr double kStep = 0.02;

double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& one, const QColor& other) {
  const auto [dark, light] =
      std::minmax({Luminance(one), Luminance(other)});  // values, not references
  return (light + 0.05) / (dark + 0.05);
}

// A pale colour has much HSL saturation and little colour; keeping the chroma instead keeps it as
// quiet in the dark as it was in the light.
QColor WithLightness(const QColor& colour, double lightness) {
  const auto [low, high] =
      std::minmax({double{colour.redF()}, double{colour.greenF()}, double{colour.blueF()}});
  const double room = 1.0 - std::abs(2.0 * lightness - 1.0);
  const double saturation = room > 0.0 ? std::min(1.0, (high - low) / room) : 0.0;
  return QColor::fromHslF(std::max(0.0F, colour.hslHueF()), static_cast<float>(saturation),
                          static_cast<float>(lightness));
}

}  // namespace

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Active, QPalette::Base).lightness() <
         palette.color(QPalette::Active, QPalette::Text).lightness();
}

QColor ToneFor(QRgb given, const QPalette& palette) {
  const QColor colour(given);
  if (!IsDark(palette)) return colour;
  const QColor text = palette.color(QPalette::Active, QPalette::Text);
  double lightness = kDarkest + (1.0 - kDarkest) * (1.0 - double{colour.lightnessF()});
  QColor tone = WithLightness(colour, lightness);
  while (lightness > kStep && Contrast(tone, text) < kReadable) {
    lightness -= kStep;
    tone = WithLightness(colour, lightness);
  }
  return tone;
}

}  // namespace quillon
