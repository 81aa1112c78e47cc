// SPDX-License-Identifier: MIT
#include "app/HelpFile.h"

#include <QCoreApplication>
#include <QDir>
#include <algorithm>

namespace quillon {

bool OpenHelpFile(const std::function<bool(const QString& path)>& open) {
  const QDir program(QCoreApplication::applicationDirPath());
  const QString places[]{QStringLiteral("./quillon.pdf"), program.filePath("quillon.pdf"),
                         program.filePath("../share/doc/quillon/quillon.pdf")};
  return std::ranges::any_of(places, open);
}

}  // namespace quillon
