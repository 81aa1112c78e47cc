// SPDX-License-Identifier: MIT
#pragma once

#include "app/CMainDialog.h"
#include "app/LibraryNotifier.h"
#include "app/MessageBoxes.h"
#include "app/OpenedLibrary.h"
#include "app/Profile.h"
#include "stage/RefusedBoards.h"
#include "update/Fetch.h"

namespace quillon::stage {

enum class Settling { kAsUsual, kNone };

// One run of the program, from the start to the end, inside a tool's process: what CQuillonApp
// starts, in the same order, over the HID library that the environment names. Message boxes are the
// real ones; browsers and viewers of documents are not started. The library is unloaded when the
// run ends, so that the next one loads it anew.
class Program {
 public:
  // Returns when the window shows the boards that were found; throws std::runtime_error when the
  // library cannot be used or no window comes. To the program it looks as if the system refused the
  // boards of `refusals` and offered `access` as help.
  explicit Program(Settling settling, Refusals refusals = {}, AccessHelp access = {});
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  CMainDialog& Window() { return window_; }
  const DeviceTable& Boards() const { return link_.table; }

 private:
  void Settle();
  void AwaitBoards();

  Settling settling_;
  OpenedLibrary opened_;
  RefusedBoards boards_;
  BoardLink link_;
  MessageBoxes prompts_;
  LibraryNotifier notifier_;
  Profile profile_;
  std::unique_ptr<Fetch> fetch_ = MakeFetch();
  bool detecting_ = false;
  CMainDialog window_;
};

// Whether the simulated boards are loaded into the process; true where nothing can tell.
bool SimulatorIsLoaded();

}  // namespace quillon::stage
