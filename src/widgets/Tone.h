// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>

namespace quillon {

// True where the palette writes light text on a dark ground.
bool IsDark(const QPalette& palette);

// The ground to paint where a page asks for `given`. A light palette gets exactly that colour. A
// dark one gets a dark tone of the same hue, on which the palette's text has a contrast of at least
// 4.5 : 1; what is lighter in the light palette is darker in the dark one, so that bands and the
// highlighted row stay apart.
QColor ToneFor(QRgb given, const QPalette& palette);

}  // namespace quillon
