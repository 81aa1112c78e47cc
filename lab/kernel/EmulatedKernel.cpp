// SPDX-License-Identifier: MIT
#include "kernel/EmulatedKernel.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <mutex>
#include <stdexcept>

#include "boards/HidInterfaces.h"
#include "kernel/EmulatedHid.h"
#include "kvusb/kvusb.h"

namespace quillon::testing {
namespace {

using Delivery = sim::WiredBoard::Delivery;

const std::string kHub = "/devices/pci0000:00/0000:00:14.0/usb1";

// Of a mouse, as far as anybody looks.
const std::vector<std::uint8_t> kMouse = {0x05, 0x01, 0x09, 0x02, 0xA1, 0x01, 0xC0};

}  // namespace

// The testbed, and the numbers that it gives away once only.
class EmulatedKernel::Usb {
 public:
  explicit Usb(std::function<void()> after_event)
      : testbed{umockdev_testbed_new(), std::move(after_event)} {
    if (umockdev_in_mock_environment() == 0)
      throw std::runtime_error("this test has to run under umockdev-wrapper");
    // The real /sys is open to everyone.
    chmod(Root().c_str(), 0755);
  }
  ~Usb() {
    others.clear();
    g_object_unref(testbed.self);
  }
  Usb(const Usb&) = delete;
  Usb& operator=(const Usb&) = delete;

  std::filesystem::path Root() const {
    gchar* const text = umockdev_testbed_get_root_dir(testbed.self);
    std::filesystem::path root = text;
    g_free(text);
    return root;
  }

  // A USB device and its HID interfaces.
  class Device {
   public:
    struct Interface {
      std::vector<std::uint8_t> report_descriptor;
      EmulatedHid::Taken taken;
    };

    Device(Usb& usb, int port, const UsbFace& face, const std::vector<Interface>& interfaces)
        : usb_(usb), path_(kHub + "/1-" + std::to_string(port)) {
      usb.testbed.Add(UsbDeviceText(path_, face, ++usb.last_device));
      for (std::size_t i = 0; i < interfaces.size(); ++i)
        hids.push_back(std::make_unique<EmulatedHid>(
            usb.testbed, path_, face, static_cast<int>(i), usb.next_hidraw++,
            interfaces[i].report_descriptor, interfaces[i].taken));
    }
    ~Device() {
      hids.clear();
      usb_.testbed.Remove(path_);
    }
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    std::vector<std::unique_ptr<EmulatedHid>> hids;

   private:
    Usb& usb_;
    std::string path_;
  };

  Testbed testbed;
  int last_device = 1, next_hidraw = 0, next_port = 1;
  std::vector<std::unique_ptr<Device>> others;
};

// A board and its cable.
struct EmulatedKernel::Place {
  explicit Place(sim::BoardSpec spec) : wired(std::move(spec)) {}

  int Take(std::span<const std::uint8_t> report) {
    const std::scoped_lock lock(mutex);
    if (configuration == nullptr) return ENODEV;
    if (report.size() != KVUSB_PACKET_BYTES) return EINVAL;
    const auto outcome = wired.Take(sim::Request(report));
    if (outcome.delivery == Delivery::kNotTaken) return EIO;
    if (outcome.delivery == Delivery::kVanished) {
      vanished = true;
      configuration->HangUp();
    }
    if (outcome.delivery == Delivery::kAnswer)
      configuration->Send(std::span(outcome.answer).first(outcome.bytes));
    if (outcome.restart) restarting = true;
    return 0;
  }

  // The last interface takes requests; a joystick's own comes before it.
  void Connect(std::unique_ptr<Usb::Device> usb_device) {
    device = std::move(usb_device);
    const std::scoped_lock lock(mutex);
    configuration = device->hids.back().get();
  }

  void Disconnect() {
    {
      const std::scoped_lock lock(mutex);
      configuration = nullptr;
      vanished = restarting = false;
    }
    device.reset();
  }

  bool IsDue() {
    const std::scoped_lock lock(mutex);
    return vanished || (restarting && configuration->IsFetched());
  }

  sim::WiredBoard wired;
  int port = 0;
  std::unique_ptr<Usb::Device> device;
  // What the emulation's thread uses too.
  std::mutex mutex;
  EmulatedHid* configuration = nullptr;
  bool vanished = false, restarting = false;
};

EmulatedKernel::EmulatedKernel(std::function<void()> after_event)
    : usb_(std::make_unique<Usb>(std::move(after_event))) {}

EmulatedKernel::~EmulatedKernel() = default;

void EmulatedKernel::SendOneByOne() { usb_->testbed.one_by_one = true; }

void EmulatedKernel::Add(const sim::Rig& rig) {
  for (const sim::BoardSpec& spec : rig.boards) Add(spec);
}

void EmulatedKernel::Add(sim::BoardSpec spec) {
  const bool plugged = spec.plugged;
  places_.push_back(std::make_unique<Place>(std::move(spec)));
  places_.back()->port = usb_->next_port++;
  if (plugged) Plug(places_.size() - 1);
}

void EmulatedKernel::AddOthers(int count, std::uint16_t vendor) {
  const UsbFace face{vendor, 0x0910, 0x0100, "Somebody Else", "Mouse", "1"};
  for (int i = 0; i < count; ++i)
    usb_->others.push_back(std::make_unique<Usb::Device>(
        *usb_, usb_->next_port++, face,
        std::vector<Usb::Device::Interface>{{kMouse, [](auto) { return 0; }}}));
}

void EmulatedKernel::Plug(std::size_t board) {
  Place& place = *places_.at(board);
  if (place.device) return;
  const sim::Board& simulated = place.wired.TheBoard();
  const UsbFace face{sim::kUsbVendor,
                     simulated.Spec().product,
                     simulated.VersionWord(),
                     simulated.Spec().manufacturer,
                     simulated.Spec().product_text,
                     place.wired.SerialText()};
  std::vector<Usb::Device::Interface> interfaces;
  for (const sim::HidInterface& hid : sim::HidInterfacesOf(simulated)) {
    EmulatedHid::Taken taken = [](auto) { return 0; };
    if (hid.configuration) taken = [&place](auto report) { return place.Take(report); };
    interfaces.push_back({hid.report_descriptor, taken});
  }
  place.Connect(std::make_unique<Usb::Device>(*usb_, place.port, face, interfaces));
}

void EmulatedKernel::Unplug(std::size_t board) {
  Place& place = *places_.at(board);
  place.Disconnect();
  place.wired.Unplug();
}

bool EmulatedKernel::IsRestartDue() const {
  return std::ranges::any_of(places_, [](const auto& place) { return place->IsDue(); });
}

bool EmulatedKernel::FinishRestarts() {
  bool found = false;
  for (std::size_t i = 0; i < places_.size(); ++i) {
    Place& place = *places_[i];
    const bool vanished = place.vanished;
    if (!vanished && !place.restarting) continue;
    found = true;
    place.Disconnect();
    if (vanished) {
      place.wired.Unplug();
    } else {
      place.wired.Restart();
      Plug(i);
    }
  }
  return found;
}

sim::WiredBoard& EmulatedKernel::Board(std::size_t board) { return places_.at(board)->wired; }

std::size_t EmulatedKernel::Count() const { return places_.size(); }

std::string EmulatedKernel::Device(std::size_t board) const {
  return places_.at(board)->configuration->Device();
}

void EmulatedKernel::LetOthersOpen(bool may) {
  for (const auto& place : places_)
    if (place->device) chmod(place->configuration->Terminal().c_str(), may ? 0666 : 0600);
  // umockdev's own sockets; it gives up where it cannot reach one.
  for (const auto& entry : std::filesystem::recursive_directory_iterator(usb_->Root() / "ioctl"))
    chmod(entry.path().c_str(), 0777);
}

void EmulatedKernel::SendReport(std::size_t board, std::span<const std::uint8_t> report) {
  places_.at(board)->configuration->Send(report);
}

}  // namespace quillon::testing
