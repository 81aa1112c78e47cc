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
};

}  // namespace quillon
