// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "devlink/TraceFile.h"
#include "devlink/TracedLibrary.h"
#include "kvusb/HidLibrary.h"

namespace quillon {

// The HID library of the process, as the environment asks for it: QUILLON_KVUSB names it
// (ChooseLibrary() says how), QUILLON_KVUSB_HOST gives it a process of its own, and QUILLON_TRACE
// names the file that every call is written to.
class OpenedLibrary {
 public:
  // `program_folder` is where our own libraries are looked for. From now on a write to a pipe that
  // nobody reads, or beyond a limit on file sizes, fails instead of ending the process: when the
  // reader of a trace quits, an update of a board must go on.
  explicit OpenedLibrary(const QString& program_folder);

  // Always usable; without a library there are just no boards.
  HidLibrary& Library() { return traced_ ? static_cast<HidLibrary&>(*traced_) : *loaded_; }

  // What went wrong, as a sentence; empty when nothing did.
  const QString& Problem() const { return problem_; }

  // Called inside a call of the library when the trace stops or the library's own process ends; the
  // library's problem says why.
  void SetWhenInTrouble(std::function<void()> when_in_trouble) {
    when_in_trouble_ = std::move(when_in_trouble);
  }

 private:
  void OpenTrace(const QString& path);
  void TellTrouble() const;

  std::function<void()> when_in_trouble_;
  std::unique_ptr<HidLibrary> loaded_;
  std::unique_ptr<TraceFile> trace_;
  std::unique_ptr<TracedLibrary> traced_;
  QString problem_;
};

}  // namespace quillon
