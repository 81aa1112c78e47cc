// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>

class QWidget;

namespace quillon::stage {

// The window with all that lies over it at the moment, dialogs, menus and lists, as a user sees
// them. A dialog gets a plain frame with its caption, which a desktop's window manager would draw.
QPixmap PictureOf(QWidget& window);

// Writes the picture as PNG; throws std::runtime_error when it cannot be written.
void SavePicture(const QPixmap& picture, const QString& file);

}  // namespace quillon::stage
