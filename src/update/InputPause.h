// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace quillon {

// As long as it lives, what the user clicks and types reaches no window, and is lost. Closing a
// window and painting go on. (An event loop that excludes user input would also keep a window from
// being closed, and would deliver the clicks later, when they mean something else.)
class InputPause : public QObject {
 public:
  InputPause();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  Qt::MouseButtons dropped_;  // went down and were dropped
};

}  // namespace quillon
