// SPDX-License-Identifier: MIT
#include "stage/Palettes.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>

namespace quillon::stage {
namespace {

struct Tint {
  QPalette::ColorRole role;
  QRgb usual;
  QRgb disabled;
};

constexpr Tint kDark[] = {
    {QPalette::Window, 0xFF2B2D30, 0xFF2B2D30},
    {QPalette::WindowText, 0xFFE3E3E3, 0xFF85888D},
    {QPalette::Base, 0xFF1E1F22, 0xFF26282B},
    {QPalette::AlternateBase, 0xFF26282B, 0xFF26282B},
    {QPalette::Text, 0xFFE3E3E3, 0xFF85888D},
    {QPalette::PlaceholderText, 0xFF8F9399, 0xFF6F7378},
    {QPalette::Button, 0xFF313439, 0xFF2D3034},
    {QPalette::ButtonText, 0xFFE3E3E3, 0xFF85888D},
    {QPalette::BrightText, 0xFFFFFFFF, 0xFFFFFFFF},
    {QPalette::ToolTipBase, 0xFF3A3D41, 0xFF3A3D41},
    {QPalette::ToolTipText, 0xFFE3E3E3, 0xFFE3E3E3},
    {QPalette::Highlight, 0xFF3B76C4, 0xFF4A4D52},
    {QPalette::HighlightedText, 0xFFFFFFFF, 0xFFB0B3B8},
    {QPalette::Link, 0xFF7FB2F0, 0xFF85888D},
    {QPalette::LinkVisited, 0xFFB79AE8, 0xFF85888D},
    {QPalette::Light, 0xFF36393D, 0xFF36393D},
    {QPalette::Midlight, 0xFF313437, 0xFF313437},
    {QPalette::Mid, 0xFF232427, 0xFF232427},
    {QPalette::Dark, 0xFF1A1B1D, 0xFF1A1B1D},
    {QPalette::Shadow, 0xFF101113, 0xFF101113},
};

QPalette DarkPalette() {
  QPalette palette;
  for (const Tint& tint : kDark) {
    palette.setColor(QPalette::Active, tint.role, QColor::fromRgb(tint.usual));
    palette.setColor(QPalette::Inactive, tint.role, QColor::fromRgb(tint.usual));
    palette.setColor(QPalette::Disabled, tint.role, QColor::fromRgb(tint.disabled));
  }
  return palette;
}

}  // namespace

bool UsePalette(const QString& name) {
  QApplication::setStyle(QStringLiteral("Fusion"));
  if (name == QLatin1String("light")) {
    QApplication::setPalette(QApplication::style()->standardPalette());
  } else if (name == QLatin1String("dark")) {
    QApplication::setPalette(DarkPalette());
  } else {
    return false;
  }
  return true;
}

}  // namespace quillon::stage
