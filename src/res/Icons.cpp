// SPDX-License-Identifier: MIT
#include "res/Icons.h"

#include <QFile>
#include <QtGlobal>

// In no namespace, as the resource compiler's functions are. A static library's resources are
// registered only when asked for.
static void RegisterIcons() { Q_INIT_RESOURCE(icons); }

namespace quillon {

QIcon Icon(const char* name) {
  RegisterIcons();
  const QString base = QStringLiteral(":/icons/") + QLatin1String(name);
  QIcon icon;
  for (const char* size : {"", "-48", "-128"}) {
    const QString file = base + QLatin1String(size) + QStringLiteral(".png");
    if (QFile::exists(file)) icon.addFile(file);
  }
  return icon;
}

}  // namespace quillon
