// SPDX-License-Identifier: MIT
#include "update/WebAddress.h"

#include <QUrl>

namespace quillon {

bool IsWebAddress(const QString& address) {
  const QUrl url(address, QUrl::StrictMode);
  const QString scheme = url.scheme();
  return url.isValid() && !url.host().isEmpty() &&
         (scheme == QLatin1String("http") || scheme == QLatin1String("https"));
}

}  // namespace quillon
