// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "devlink/DeviceTable.h"
#include "pages/common/UserPrompts.h"
#include "update/Fetch.h"
#include "update/lists/VersionLists.h"

namespace quillon {

// What the checks reach beyond the program. All of it outlives them.
struct UpdateServices {
  Fetch& fetch;
  // Shows an http or https address to the user.
  std::function<void(const QString& address)> open_in_browser;
  // This program's version; nothing if it could not be found out.
  std::optional<ProgramVersion> installed;
};

// Compares what is installed with the lists that the vendor publishes, and offers what is newer.
class UpdateChecks {
 public:
  UpdateChecks(DeviceTable& table, UserPrompts& prompts, UpdateServices services);

  // Runs the check that belongs to a list, about the current board if it is about one, and returns
  // when its last box is closed. The check of nodes says nothing but that it was not possible; its
  // result is OnlineNodeVersion(). The caller holds the gate: this turns the event loop. Returns
  // whether the list was read.
  bool CheckForUpdates(int list);

  // Whether a check waits for a server.
  bool IsWaiting() const { return waiting_; }
  // Ends the check that waits, at once and without a further word.
  void Abandon();

 private:
  bool CheckProgram();
  bool CheckFirmware();
  bool CheckNodes();
  Fetched Ask(const QString& address, std::size_t limit);
  std::optional<std::string> ReadList(int list, std::size_t limit);
  void Show(const Comparison& result);
  void Offer(const UpdateOffer& offer);

  DeviceTable& table_;
  UserPrompts& prompts_;
  UpdateServices services_;
  bool waiting_ = false;
  bool abandoned_ = false;
};

}  // namespace quillon
