// SPDX-License-Identifier: MIT
#include "app/CQuillonApp.h"

int main(int argc, char** argv) {
  quillon::CQuillonApp application(argc, argv);
  return application.Run();
}
