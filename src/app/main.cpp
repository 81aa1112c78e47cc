// SPDX-License-Identifier: MIT
#include <cstdlib>

#include "app/CQuillonApp.h"

int main(int argc, char** argv) {
  quillon::CQuillonApp application(argc, argv);
  const int result = application.Run();
  // All that is the program's own has ended with Run(). Qt would wait for the rest.
  if (application.LeavesWorkBehind()) std::_Exit(result);
  return result;
}
