// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <fstream>
#include <memory>

#include "devlink/HidLibrary.h"

namespace quillon {

// The HID library of the process, as the environment asks for it: QUILLON_KVUSB names it
// (ChooseLibrary() says how), and QUILLON_TRACE the file that every call is written to.
class OpenedLibrary {
 public:
  // `program_folder` is where our own libraries are looked for.
  explicit OpenedLibrary(const QString& program_folder);

  // Always usable; without a library there are just no boards.
  HidLibrary& Library() { return traced_ ? *traced_ : *loaded_; }

  // What went wrong, as a sentence; empty when nothing did.
  const QString& Problem() const { return problem_; }

 private:
  void OpenTrace(const QString& path);

  std::unique_ptr<HidLibrary> loaded_;
  std::ofstream trace_;
  std::unique_ptr<HidLibrary> traced_;
  QString problem_;
};

}  // namespace quillon
