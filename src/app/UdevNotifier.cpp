// SPDX-License-Identifier: MIT
#include "app/UdevNotifier.h"

#include <libudev.h>

#include <QSocketNotifier>
#include <cerrno>
#include <exception>
#include <system_error>
#include <utility>

#include "hidraw/HidrawList.h"
#include "kvusb/kvusb.h"

namespace quillon {
namespace {

std::vector<HidrawNode> Nodes() {
  std::error_code ignored;
  return ListHidrawNodes(ignored);
}

std::string Text(const char* text) { return text != nullptr ? text : ""; }

}  // namespace

void UdevNotifier::Release::operator()(udev* context) const { udev_unref(context); }
void UdevNotifier::Release::operator()(udev_device* device) const { udev_device_unref(device); }
void UdevNotifier::Release::operator()(udev_monitor* monitor) const { udev_monitor_unref(monitor); }

// The kernel applies the filter, so that other devices never wake the program.
UdevNotifier::UdevNotifier() : context_(udev_new()) {
  if (!context_) return;
  monitor_.reset(udev_monitor_new_from_netlink(context_.get(), "udev"));
  if (!monitor_) return;
  udev_monitor_filter_add_match_subsystem_devtype(monitor_.get(), "hidraw", nullptr);
  udev_monitor_filter_add_match_subsystem_devtype(monitor_.get(), "usb", "usb_device");
  if (udev_monitor_enable_receiving(monitor_.get()) < 0) monitor_.reset();
  boards_.emplace(Nodes());
}

UdevNotifier::~UdevNotifier() = default;

bool UdevNotifier::Start(Handler handler) {
  if (!monitor_) return false;
  handler_ = std::move(handler);
  auto* const readable =
      new QSocketNotifier(udev_monitor_get_fd(monitor_.get()), QSocketNotifier::Read, this);
  connect(readable, &QSocketNotifier::activated, this, &UdevNotifier::Deliver);
  return true;
}

// A slot, which must not throw.
void UdevNotifier::Deliver() {
  if (!handler_) return;
  try {
    Receive();
  } catch (const std::exception&) {
    missed_ = true;
  }
}

void UdevNotifier::Receive() {
  for (;;) {
    errno = 0;
    const std::unique_ptr<udev_device, Release> device(udev_monitor_receive_device(monitor_.get()));
    if (!device) break;
    const KernelEvent event{Text(udev_device_get_action(device.get())),
                            Text(udev_device_get_subsystem(device.get())),
                            Text(udev_device_get_syspath(device.get()))};
    if (const auto board = boards_->Take(event)) Report(*board);
  }
  // More came at once than the socket holds.
  if (errno == ENOBUFS) missed_ = true;
  if (!missed_) return;
  const auto events = boards_->Compare(Nodes());
  missed_ = false;
  for (const BoardEvent& board : events) Report(board);
}

void UdevNotifier::Report(const BoardEvent& event) const {
  handler_(event.arrived ? KVUSB_EVENT_ARRIVAL : KVUSB_EVENT_REMOVAL, KVUSB_DEVICE_INTERFACE,
           event.path);
}

}  // namespace quillon
