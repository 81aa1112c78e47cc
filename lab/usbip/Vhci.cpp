// SPDX-License-Identifier: MIT
#include "usbip/Vhci.h"

#include <fcntl.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <variant>

#include "storage/ReadFile.h"
#include "usbip/VhciPorts.h"

namespace quillon::usbip {
namespace {

// Bus and device number that a device had where it came from; the kernel only shows them.
constexpr unsigned kDeviceId = 0x10002;
constexpr unsigned kFullSpeed = 2;
// A file in sysfs is one page long at most; this is the size of the largest pages.
constexpr std::size_t kMostStatusBytes = 64 * 1024;

std::string Reason(int error) { return std::string(std::strerror(error)) + "."; }

std::string WhyNotOpened(const std::filesystem::path& file, int error) {
  if (error == ENOENT || error == ENOTDIR)
    return "There is no " + file.string() +
           ": the kernel's module for virtual USB boards is not loaded. Load it as root with "
           "\"modprobe vhci_hcd\".";
  if (error == EACCES || error == EPERM || error == EROFS)
    return "No right to write to " + file.string() +
           ": run as root, or let root give you the right.";
  return file.string() + " cannot be opened: " + Reason(error);
}

// Returns 0 or the error number.
int WriteOnce(int file, const std::string& text) {
  const ssize_t written = write(file, text.data(), text.size());
  return written < 0 ? errno : 0;
}

}  // namespace

// The first controller has the files of all.
std::vector<unsigned> Vhci::FreePortsOfAll() const {
  std::vector<unsigned> ports;
  for (unsigned controller = 0;; ++controller) {
    const std::string suffix = controller == 0 ? "" : '.' + std::to_string(controller);
    const auto text = ReadFile(folder_ / ("status" + suffix), kMostStatusBytes);
    if (!std::holds_alternative<std::string>(text)) return ports;
    const auto free = FreePorts(std::get<std::string>(text));
    ports.insert(ports.end(), free.begin(), free.end());
  }
}

std::variant<Vhci::Attached, std::string> Vhci::Attach() const {
  const auto path = folder_ / "attach";
  const FileDescriptor file(open(path.c_str(), O_WRONLY | O_CLOEXEC));
  if (!file.IsOpen()) return WhyNotOpened(path, errno);
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
    return "There is no socket for the board: " + Reason(errno);
  FileDescriptor ours(ends[0]);
  const FileDescriptor kernels(ends[1]);  // closed at the end; the kernel holds it by itself
  for (const unsigned port : FreePortsOfAll()) {
    const std::string line = std::to_string(port) + " " + std::to_string(kernels.Number()) + " " +
                             std::to_string(kDeviceId) + " " + std::to_string(kFullSpeed);
    const int error = WriteOnce(file.Number(), line);
    if (error == 0) return Attached{std::move(ours), port};
    // Somebody else was faster.
    if (error != EBUSY) return "Port " + std::to_string(port) + " takes no board: " + Reason(error);
  }
  return "No port of the virtual USB hubs is free (" + (folder_ / "status").string() + ").";
}

}  // namespace quillon::usbip
