// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QPushButton>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/CMainDialog.h"
#include "app/Profile.h"
#include "kvusb/ForwardingLibrary.h"
#include "kvusb/HidPacket.h"
#include "pages/common/CPageSet.h"
#include "sim/Bus.h"
#include "testing/link/FaultyLibrary.h"
#include "testing/pages/OwnWeb.h"
#include "testing/pages/ScriptedPrompts.h"
#include "tree/CDeviceTreeCtrl.h"

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
class MainFixture {
 public:
  explicit MainFixture(HidLibrary& library, bool offers_access = true)
      : link(library),
        window({link, prompts, notifier, profile,
                [this] {
                  ++settled;
                  if (on_settle) on_settle();
                },
                web.Services(), web.Documents(), offers_access ? access.Help() : AccessHelp()}) {}

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
  OwnWeb web;
  CMainDialog window;
};

// Notes every request with the board that it goes to, as "001 1D": serial number and command.
class Witness : public ForwardingLibrary {
 public:
  using ForwardingLibrary::ForwardingLibrary;

  std::int32_t WriteData(DeviceRecord& record, PacketSpan packet) override {
    const auto command = static_cast<unsigned>(packet[kCommandByte]);
    heard.push_back(QString::asprintf("%s %02X", record.serial_number, command).toStdString());
    return ForwardingLibrary::WriteData(record, packet);
  }

  std::vector<std::string> heard;
};

// The main window over simulated boards, which are given as in a rig.
class SimMain {
 public:
  explicit SimMain(const std::string& boards)
      : bus(std::get<sim::Rig>(sim::ParseRig(R"({"boards": [)" + boards + "]}")), {.latency = {}}),
        witness(bus),
        library(witness),
        fixture(library) {}

  // Selects the board or port with this text in its label, as a click does.
  void Select(const QString& label) {
    auto& tree = fixture.window.Tree();
    const auto found = tree.model()->match(tree.model()->index(0, 0), Qt::DisplayRole, label, 1,
                                           Qt::MatchContains | Qt::MatchRecursive);
    ASSERT_FALSE(found.isEmpty()) << label.toStdString();
    tree.setCurrentIndex(found.front());
  }

  // A button of the pages that are shown. A missing one ends the test.
  QPushButton& Press(const QString& text) const {
    for (auto* const button : fixture.window.ShownPageSet()->findChildren<QPushButton*>()) {
      if (button->text() == text) return *button;
    }
    throw std::runtime_error("The pages have no button " + text.toStdString());
  }

  sim::Bus bus;
  Witness witness;
  FaultyLibrary library;
  MainFixture fixture;
};

// The calls of a detection that finds one board, of this product.
inline std::string OneBoard(const std::string& product) {
  return "close 0 -> 1\ndetect 2 -> 1 boards 1\nboard pid " + product +
         " version 0100 product \"P\" maker \"M\" serial \"001\"\ndetect 1 -> 0\ndetect 3 -> 0";
}

}  // namespace quillon::testing
