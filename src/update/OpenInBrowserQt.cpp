// SPDX-License-Identifier: MIT
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

#include "update/OpenInBrowser.h"

namespace quillon {

bool OpenInBrowser(const QString& address) {
  return IsWebAddress(address) && QDesktopServices::openUrl(QUrl(address));
}

bool OpenDocument(const QString& path) {
  const QFileInfo file(path);
  return file.exists() && QDesktopServices::openUrl(QUrl::fromLocalFile(file.absoluteFilePath()));
}

}  // namespace quillon
