// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <vector>

#include "app/CMainDialog.h"
#include "app/Profile.h"
#include "testing/pages/ScriptedPrompts.h"

namespace quillon::testing {

// Hot-plug events that a test makes.
class OwnNotifier : public DeviceNotifier {
 public:
  bool Start(Handler handler) override {
    handler_ = std::move(handler);
    return registers;
  }
  void Report(std::uint32_t event, std::uint32_t type, std::string_view path) const {
    handler_(event, type, path);
  }
  bool IsStarted() const { return static_cast<bool>(handler_); }

  bool registers = true;

 private:
  Handler handler_;
};

// A system with the udev rule in the state that the test says, which notes what it is to run with
// an administrator's rights.
struct OwnAccess {
  AccessHelp Help() {
    return {[this] { return rule; },
            [this](const QStringList& arguments, auto when_done) {
              runs.push_back(arguments);
              done = std::move(when_done);
            }};
  }

  FoundRule rule;
  std::vector<QStringList> runs;
  std::function<void(const ElevatedResult&)> done;
};

// The main window with all that it stands on. Never shown, so that it starts when told to.
class MainBench {
 public:
  explicit MainBench(HidLibrary& library, bool offers_access = true)
      : link(library),
        window({link, prompts, notifier, profile,
                [this] {
                  ++settled;
                  if (on_settle) on_settle();
                },
                offers_access ? access.Help() : AccessHelp()}) {}

  // A board of ours came; reported as the system does it.
  void ReportArrival() const {
    notifier.Report(KVUSB_EVENT_ARRIVAL, KVUSB_DEVICE_INTERFACE,
                    R"(\\?\HID#vid_4c7e&pid_0910#7&1)");
  }

  // Everything that waits on the event queue.
  static void RunEvents() { QCoreApplication::processEvents(); }

  BoardLink link;
  ScriptedPrompts prompts;
  OwnNotifier notifier;
  Profile profile;
  int settled = 0;
  std::function<void()> on_settle;
  OwnAccess access;
  CMainDialog window;
};

}  // namespace quillon::testing
