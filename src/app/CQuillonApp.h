// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>

namespace quillon {

// The application object: one copy at a time, the HID library, the main window.
class CQuillonApp : public QApplication {
  Q_OBJECT

 public:
  CQuillonApp(int& argc, char** argv);

  // Runs the program until its window closes; returns the exit code.
  int Run();
  // Whether something is still looked up that nobody waits for any more, and that would keep the
  // process from ending.
  bool LeavesWorkBehind() const { return leaves_work_behind_; }

 private:
  bool leaves_work_behind_ = false;
};

}  // namespace quillon
