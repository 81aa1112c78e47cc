// SPDX-License-Identifier: MIT
#include "kernel/EmulatedHid.h"

#include <fcntl.h>
#include <linux/hidraw.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <thread>
#include <utility>

namespace quillon::testing {
namespace {

template <typename... Values>
std::string Format(const char* format, Values... values) {
  std::array<char, 256> text{};
  std::snprintf(text.data(), text.size(), format, values...);
  return text.data();
}

// An attribute as bytes, so that no text has to be escaped.
std::string Hex(std::span<const std::uint8_t> bytes) {
  std::string out;
  for (const std::uint8_t byte : bytes) out += Format("%02X", static_cast<unsigned>(byte));
  return out;
}

std::string TextAttribute(const char* name, const std::string& text) {
  const std::string line = text + "\n";
  return std::string("H: ") + name + "=" +
         Hex({reinterpret_cast<const std::uint8_t*>(line.data()), line.size()}) + "\n";
}

// Copies into the memory that an ioctl's argument points at.
void Put(UMockdevIoctlClient* client, std::size_t size, const void* from) {
  UMockdevIoctlData* const argument = umockdev_ioctl_client_get_arg(client);
  UMockdevIoctlData* const data = umockdev_ioctl_data_resolve(argument, 0, size, nullptr);
  if (data == nullptr) return;
  std::memcpy(data->data, from, size);
  g_object_unref(data);
}

}  // namespace

void Testbed::Add(const std::string& device) const {
  GError* error = nullptr;
  const bool added = umockdev_testbed_add_from_string(self, device.c_str(), &error) != 0;
  const std::string reason = error != nullptr ? error->message : "no reason";
  g_clear_error(&error);
  if (!added) throw std::runtime_error("umockdev took no device: " + reason);
  if (after_event) after_event();
}

void Testbed::Remove(const std::string& path) const {
  Tell(path, "remove");
  umockdev_testbed_remove_device(self, ("/sys" + path).c_str());
}

void Testbed::Tell(const std::string& path, const char* action) const {
  umockdev_testbed_uevent(self, ("/sys" + path).c_str(), action);
  if (after_event) after_event();
}

std::string UsbDeviceText(const std::string& path, const UsbFace& face, int number) {
  return "P: " + path + "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\n" +
         Format("E: PRODUCT=%x/%x/%x\nE: BUSNUM=001\nE: DEVNUM=%03d\n",
                static_cast<unsigned>(face.vendor), static_cast<unsigned>(face.product),
                static_cast<unsigned>(face.release), number) +
         TextAttribute("idVendor", Format("%04x", static_cast<unsigned>(face.vendor))) +
         TextAttribute("idProduct", Format("%04x", static_cast<unsigned>(face.product))) +
         TextAttribute("bcdDevice", Format("%04x", static_cast<unsigned>(face.release))) +
         TextAttribute("manufacturer", face.manufacturer) +
         TextAttribute("product", face.product_text) + TextAttribute("serial", face.serial) + "\n";
}

EmulatedHid::EmulatedHid(const Testbed& testbed, const std::string& usb, const UsbFace& face,
                         int number, int hidraw, std::vector<std::uint8_t> report_descriptor,
                         Taken taken)
    : testbed_(testbed),
      handler_(umockdev_ioctl_base_new()),
      link_(new Link{{}, this}),
      report_descriptor_(std::move(report_descriptor)),
      taken_(std::move(taken)) {
  const unsigned vendor = face.vendor, product = face.product;
  const std::string node = Format("hidraw%d", hidraw);
  device_ = "/dev/" + node;
  interface_path_ = usb + "/" + usb.substr(usb.rfind('/') + 1) + Format(":1.%d", number);
  const std::string hid =
      Format("0003:%04X:%04X.%04X", vendor, product, static_cast<unsigned>(hidraw) + 1U);
  hid_path_ = interface_path_ + "/" + hid;
  node_path_ = hid_path_ + "/hidraw/" + node;
  testbed_.Add(
      "P: " + interface_path_ + "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_interface\nE: DRIVER=usbhid\n" +
      Format("E: PRODUCT=%x/%x/%x\n", vendor, product, static_cast<unsigned>(face.release)) +
      TextAttribute("bInterfaceNumber", Format("%02d", number)) + "\n");
  testbed_.Add("P: " + hid_path_ + "\nE: SUBSYSTEM=hid\nE: DRIVER=hid-generic\n" +
               Format("E: HID_ID=0003:%08X:%08X\n", vendor, product) +
               "H: report_descriptor=" + Hex(report_descriptor_) + "\n\n");
  // Before the node comes, as somebody may open it at its event already.
  g_object_set_data_full(G_OBJECT(handler_), "link", link_,
                         [](gpointer link) { delete static_cast<Link*>(link); });
  g_signal_connect(handler_, "handle-ioctl", G_CALLBACK(OnIoctl), link_);
  g_signal_connect(handler_, "handle-write", G_CALLBACK(OnWrite), link_);
  if (umockdev_testbed_attach_ioctl(testbed_.self, device_.c_str(), handler_, nullptr) == 0)
    throw std::runtime_error("umockdev cannot answer for " + device_);
  testbed_.Add(
      "P: " + node_path_ + "\nN: " + node + "\nE: SUBSYSTEM=hidraw\nE: DEVNAME=" + device_ +
      Format("\nE: MAJOR=241\nE: MINOR=%d\n", hidraw) + "L: device=../../../" + hid + "\n\n");
  pty_ = umockdev_testbed_get_dev_fd(testbed_.self, device_.c_str());
  if (pty_ < 0) throw std::runtime_error("umockdev has no terminal for " + device_);
}

// A client that reacts to the first event must not find the interface any more. And a name under
// /sys can come again only when all below it is gone.
EmulatedHid::~EmulatedHid() {
  gchar* const root_text = umockdev_testbed_get_root_dir(testbed_.self);
  const std::filesystem::path root = root_text;
  g_free(root_text);
  std::error_code ignored;
  std::filesystem::remove(root / "sys/class/hidraw" / device_.substr(5), ignored);
  testbed_.Tell(node_path_, "remove");
  testbed_.Tell(hid_path_, "remove");
  HangUp();
  {
    const std::scoped_lock lock(link_->mutex);
    link_->self = nullptr;
  }
  umockdev_testbed_detach_ioctl(testbed_.self, device_.c_str(), nullptr);
  for (const std::string& path : {node_path_, hid_path_, interface_path_})
    umockdev_testbed_remove_device(testbed_.self, ("/sys" + path).c_str());
  g_object_unref(handler_);
}

std::string EmulatedHid::Terminal() const {
  std::array<char, 64> name{};
  return ptsname_r(pty_, name.data(), name.size()) == 0 ? name.data() : "";
}

void EmulatedHid::Send(std::span<const std::uint8_t> report) const {
  if (testbed_.one_by_one) AwaitFetched();
  if (write(pty_, report.data(), report.size()) != static_cast<ssize_t>(report.size()))
    std::perror("EmulatedHid: a report is lost");
}

// By bare system calls: umockdev takes the terminal for the node.
bool EmulatedHid::IsFetched() const {
  const int slave = static_cast<int>(
      syscall(SYS_openat, AT_FDCWD, Terminal().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  if (slave < 0) return true;
  int waiting = 0;
  const bool known = syscall(SYS_ioctl, slave, FIONREAD, &waiting) == 0;
  syscall(SYS_close, slave);
  return !known || waiting == 0;
}

// A reader that is gone does not hold the board.
void EmulatedHid::AwaitFetched() const {
  constexpr std::chrono::milliseconds kPause(1);
  constexpr int kMostPauses = 1000;
  for (int i = 0; i < kMostPauses && !IsFetched(); ++i) std::this_thread::sleep_for(kPause);
}

// The testbed owns the terminal's descriptor, so it is replaced instead of closed; and it keeps a
// link by the terminal's name, which the next terminal may get.
void EmulatedHid::HangUp() {
  if (std::exchange(hung_up_, true)) return;
  std::string link = Terminal();
  std::ranges::replace(link, '/', '_');
  gchar* const root = umockdev_testbed_get_root_dir(testbed_.self);
  std::error_code ignored;
  std::filesystem::remove(std::filesystem::path(root) / "dev/.ptymap" / link, ignored);
  g_free(root);
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  dup3(nothing, pty_, O_CLOEXEC);
  close(nothing);
}

gboolean EmulatedHid::OnIoctl(UMockdevIoctlBase* /*base*/, UMockdevIoctlClient* client,
                              gpointer link) {
  const std::scoped_lock lock(static_cast<Link*>(link)->mutex);
  const EmulatedHid* const self = static_cast<Link*>(link)->self;
  if (self == nullptr) {
    umockdev_ioctl_client_complete(client, -1, ENODEV);
    return TRUE;
  }
  const auto& descriptor = self->report_descriptor_;
  const gulong request = umockdev_ioctl_client_get_request(client) & 0xFFFFFFFFU;
  const int size = static_cast<int>(descriptor.size());
  if (request == HIDIOCGRDESCSIZE) {
    Put(client, sizeof size, &size);
  } else if (request == HIDIOCGRDESC) {
    std::vector<std::uint8_t> answer(sizeof size + descriptor.size());
    std::memcpy(answer.data(), &size, sizeof size);
    std::ranges::copy(descriptor, answer.begin() + sizeof size);
    Put(client, answer.size(), answer.data());
  } else {
    umockdev_ioctl_client_complete(client, -1, EINVAL);
    return TRUE;
  }
  umockdev_ioctl_client_complete(client, 0, 0);
  return TRUE;
}

gboolean EmulatedHid::OnWrite(UMockdevIoctlBase* /*base*/, UMockdevIoctlClient* client,
                              gpointer link) {
  const std::scoped_lock lock(static_cast<Link*>(link)->mutex);
  const EmulatedHid* const self = static_cast<Link*>(link)->self;
  UMockdevIoctlData* const data = umockdev_ioctl_client_get_arg(client);
  const auto* const bytes = static_cast<const std::uint8_t*>(static_cast<void*>(data->data));
  const std::vector<std::uint8_t> report(bytes, bytes + data->data_len);
  const int error = self != nullptr ? self->taken_(report) : ENODEV;
  umockdev_ioctl_client_complete(client, error == 0 ? static_cast<glong>(report.size()) : -1,
                                 error);
  return TRUE;
}

}  // namespace quillon::testing
