// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <memory>
#include <optional>

#include "devlink/DeviceNotifier.h"
#include "hidraw/BoardEvents.h"

struct udev;
struct udev_device;
struct udev_monitor;

namespace quillon {

// Hot-plug events of the system, from udev: the kernel's own, after udev has given the nodes their
// rights. Listens from its construction on; events that come before Start() are handed on after it.
class UdevNotifier : public QObject, public DeviceNotifier {
  Q_OBJECT

 public:
  UdevNotifier();
  ~UdevNotifier() override;

  bool Start(Handler handler) override;
  void Deliver() override;

 private:
  struct Release {
    void operator()(udev* context) const;
    void operator()(udev_device* device) const;
    void operator()(udev_monitor* monitor) const;
  };

  void Receive();
  void Report(const BoardEvent& event) const;

  std::unique_ptr<udev, Release> context_;
  std::unique_ptr<udev_monitor, Release> monitor_;
  std::optional<BoardEvents> boards_;
  bool missed_ = false;  // events were lost, so that only the kernel's list tells what happened
  Handler handler_;
};

}  // namespace quillon
