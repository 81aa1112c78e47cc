// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <cmath>

#include "widgets/Tone.h"

namespace quillon {
namespace {

const QRgb kHighlight = qRgb(191, 212, 227);
const QRgb kBandLight = qRgb(240, 240, 240);
const QRgb kBandDark = qRgb(220, 220, 220);
const QRgb kTitles = qRgb(220, 210, 245);
const QRgb kLabels = qRgb(230, 230, 255);
const QRgb kSand = qRgb(227, 212, 191);
const QRgb kAll[] = {kHighlight, kBandLight, kBandDark, kTitles, kLabels, kSand};

QPalette Palette(QRgb base, QRgb text) {
  QPalette palette;
  palette.setColor(QPalette::Base, QColor(base));
  palette.setColor(QPalette::Text, QColor(text));
  return palette;
}

double Linear(int part) {
  const double share = part / 255.0;
  return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& c) {
  return 0.2126 * Linear(c.red()) + 0.7152 * Linear(c.green()) + 0.0722 * Linear(c.blue());
}

double Contrast(const QColor& light, const QColor& dark) {
  return (Luminance(light) + 0.05) / (Luminance(dark) + 0.05);
}

TEST(Tone, IsExactInALightPalette) {
  const QPalette light = Palette(qRgb(255, 255, 255), qRgb(0, 0, 0));
  for (const QRgb given : kAll) EXPECT_EQ(ToneFor(given, light).rgb(), given);
}

TEST(Tone, IsDarkOfTheSameHueAndReadableInADarkPalette) {
  // The second text is a faint one that the plain mirror image would not carry.
  for (const QRgb text : {qRgb(225, 225, 225), qRgb(150, 150, 150)}) {
    const QPalette dark = Palette(qRgb(30, 30, 32), text);
    for (const QRgb given : {kHighlight, kTitles, kLabels, kSand, kBandLight, kBandDark,
                             qRgb(255, 0, 0), qRgb(0, 0, 0)}) {
      const QColor tone = ToneFor(given, dark);
      EXPECT_GE(Contrast(QColor(text), tone), 4.5) << std::hex << given;
      const int hue = QColor(given).hslHue();
      const int shift = std::abs(tone.hslHue() - hue);
      EXPECT_LE(std::min(shift, 360 - shift), 6) << std::hex << given;  // rounding of dark greys
    }
  }
}

TEST(Tone, KeepsTheBandsAndTheHighlightApartInADarkPalette) {
  const QPalette dark = Palette(qRgb(30, 30, 32), qRgb(225, 225, 225));
  const int light_band = ToneFor(kBandLight, dark).lightness();
  const int dark_band = ToneFor(kBandDark, dark).lightness();
  EXPECT_GE(dark_band - light_band, 8);
  EXPECT_GE(ToneFor(kHighlight, dark).lightness() - light_band, 8);
}

}  // namespace
}  // namespace quillon
