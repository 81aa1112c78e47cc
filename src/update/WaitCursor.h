// SPDX-License-Identifier: MIT
#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace quillon {

// The pointer shows that the program is busy as long as this lives.
class WaitCursor {
 public:
  WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
  ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
};

}  // namespace quillon
