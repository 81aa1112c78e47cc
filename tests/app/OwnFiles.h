// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QFile>

#include "testing/OwnFolders.h"

namespace quillon::testing {

// A file of this test.
inline QString Own(const char* name) {
  return QString::fromStdString((OwnFolders::Root() / name).string());
}

inline void WriteFile(const QString& path, const QByteArray& content) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(content);
}

}  // namespace quillon::testing
