// SPDX-License-Identifier: MIT
#include "kvusb/hid/WindowsHid.h"

#include <windows.h>
// Only after the above. The headers of the HID driver do not know C++.
#include <setupapi.h>
extern "C" {
#include <hidsdi.h>
}

#include <algorithm>
#include <array>
#include <cctype>
#include <system_error>
#include <tuple>
#include <utility>

#include "kvusb/UsbNumbers.h"
#include "kvusb/hid/OverlappedHid.h"

namespace quillon {
namespace {

// The device manager's DEVPKEY_Device_LastArrivalDate, a FILETIME.
constexpr DEVPROPKEY kLastArrival{
    {0x83DA6326, 0x97A6, 0x4088, {0x94, 0x53, 0xA1, 0x92, 0x3F, 0x57, 0x3B, 0x29}}, 102};

constexpr int kNoSuchDevice = 433;  // ERROR_NO_SUCH_DEVICE, which not every compiler's headers have

// As many reports as Linux keeps for a reader that is late.
constexpr ULONG kKeptReports = 64;

std::string Utf8(const wchar_t* text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  if (size <= 1) return {};
  std::string out(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, out.data(), size, nullptr, nullptr);
  out.pop_back();  // the zero at its end
  return out;
}

std::wstring Wide(const std::string& text) {
  const int size = MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, nullptr, 0);
  std::wstring out(static_cast<std::size_t>(std::max(size, 1)), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, out.data(), size);
  return out;
}

std::string ReasonOf(DWORD error) {
  return std::system_category().message(static_cast<int>(error));
}

// Null with GetLastError() where it cannot be opened.
FileHandle OpenFile(const std::string& device, DWORD access) {
  const HANDLE file = CreateFileW(Wide(device).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr);
  return FileHandle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

FileHandle OpenForExchanges(const std::string& device) {
  return OpenFile(device, GENERIC_READ | GENERIC_WRITE);
}

std::optional<HIDP_CAPS> CapabilitiesOf(HANDLE file) {
  PHIDP_PREPARSED_DATA parsed = nullptr;
  if (HidD_GetPreparsedData(file, &parsed) == 0) return std::nullopt;
  HIDP_CAPS capabilities{};
  const NTSTATUS status = HidP_GetCaps(parsed, &capabilities);
  HidD_FreePreparsedData(parsed);
  return status == HIDP_STATUS_SUCCESS ? std::optional(capabilities) : std::nullopt;
}

// One of a board's texts; false where the board gave none. Some boards garble theirs when they are
// offered a longer buffer, and none on USB has a longer text.
bool ReadText(HANDLE file, BOOLEAN(__stdcall* get)(HANDLE, PVOID, ULONG), std::string& text) {
  std::array<wchar_t, 126> wide{};
  if (get(file, wide.data(), sizeof wide) == 0) return false;
  wide.back() = L'\0';
  text = Utf8(wide.data());
  return true;
}

// "\\?\hid#vid_4c7e&pid_0910&mi_01#...": other makers' devices are told by their names alone.
bool NamesOurVendor(std::string device) {
  std::ranges::transform(device, device.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return device.find("vid_4c7e") != std::string::npos;
}

// The device manager's list of what is there now.
class DeviceList {
 public:
  DeviceList() {
    HidD_GetHidGuid(&hid_);
    set_ = SetupDiGetClassDevsW(&hid_, nullptr, nullptr, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE);
    if (set_ == INVALID_HANDLE_VALUE) error_ = GetLastError();
  }
  ~DeviceList() {
    if (set_ != INVALID_HANDLE_VALUE) SetupDiDestroyDeviceInfoList(set_);
  }
  DeviceList(const DeviceList&) = delete;
  DeviceList& operator=(const DeviceList&) = delete;

  // Why the list is not there, or not complete; 0 when it is.
  DWORD Error() const { return error_; }

  // Our boards', the oldest first.
  std::vector<WindowsHid::Entry> Ours() {
    std::vector<WindowsHid::Entry> entries;
    SP_DEVICE_INTERFACE_DATA data{};
    data.cbSize = sizeof data;
    if (error_ != 0) return entries;
    for (DWORD i = 0; SetupDiEnumDeviceInterfaces(set_, nullptr, &hid_, i, &data) != 0; ++i) {
      WindowsHid::Entry entry = Read(data);
      if (NamesOurVendor(entry.device)) entries.push_back(std::move(entry));
    }
    if (GetLastError() != ERROR_NO_MORE_ITEMS) error_ = GetLastError();
    std::ranges::sort(entries, {}, [](const WindowsHid::Entry& entry) {
      return std::tie(entry.arrival, entry.device);
    });
    return entries;
  }

 private:
  WindowsHid::Entry Read(SP_DEVICE_INTERFACE_DATA& data) {
    DWORD size = 0;
    SetupDiGetDeviceInterfaceDetailW(set_, &data, nullptr, 0, &size, nullptr);
    // Of numbers for their alignment.
    std::vector<std::uint64_t> room(size / sizeof(std::uint64_t) + 2);
    auto* const detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(room.data());
    detail->cbSize = sizeof *detail;
    SP_DEVINFO_DATA info{};
    info.cbSize = sizeof info;
    if (SetupDiGetDeviceInterfaceDetailW(set_, &data, detail, size, nullptr, &info) == 0) return {};
    return {Utf8(detail->DevicePath), ArrivalOf(info)};
  }

  std::uint64_t ArrivalOf(SP_DEVINFO_DATA& info) {
    FILETIME time{};
    DEVPROPTYPE type = 0;
    if (SetupDiGetDevicePropertyW(set_, &info, &kLastArrival, &type, reinterpret_cast<BYTE*>(&time),
                                  sizeof time, nullptr, 0) == 0)
      return 0;
    return std::uint64_t{time.dwHighDateTime} << 32U | time.dwLowDateTime;
  }

  GUID hid_{};
  HDEVINFO set_ = INVALID_HANDLE_VALUE;
  DWORD error_ = 0;
};

}  // namespace

HidListing WindowsHid::List() {
  DeviceList devices;
  HidListing listing;
  std::vector<Known> known;
  for (const Entry& entry : devices.Ours()) {
    const auto same = std::ranges::find_if(known_, [&](const Known& old) {
      return old.entry.device == entry.device && old.entry.arrival == entry.arrival;
    });
    const auto seen = same != known_.end() ? *same : Look(entry);
    if (!seen) continue;
    if (seen->node) listing.nodes.push_back(*seen->node);
    if (seen->whole && entry.arrival != 0) known.push_back(*seen);
  }
  known_ = std::move(known);
  if (devices.Error() != 0) {
    listing.problem = {KVUSB_PROBLEM_OTHER,
                       "Boards cannot be looked for: Windows does not list its HID devices: " +
                           ReasonOf(devices.Error()) + "."};
  }
  return listing;
}

// Nothing if the board left.
std::optional<WindowsHid::Known> WindowsHid::Look(const Entry& entry) {
  const FileHandle file = OpenFile(entry.device, 0);
  if (!file) return std::nullopt;
  HIDD_ATTRIBUTES attributes{};
  attributes.Size = sizeof attributes;
  const auto capabilities = CapabilitiesOf(file.get());
  if (!capabilities || HidD_GetAttributes(file.get(), &attributes) == 0) return std::nullopt;
  Known known{entry, std::nullopt, true};
  if (attributes.VendorID != kUsbVendorId || capabilities->UsagePage != kConfigurationUsagePage ||
      !IsDeviceType(capabilities->Usage))
    return known;
  HidNode node;
  node.device = entry.device;
  node.arrival = std::to_string(entry.arrival);
  node.type = capabilities->Usage;
  node.product_id = attributes.ProductID;
  node.release = attributes.VersionNumber;
  const bool product = ReadText(file.get(), HidD_GetProductString, node.product_text);
  const bool manufacturer = ReadText(file.get(), HidD_GetManufacturerString, node.manufacturer);
  const bool serial = ReadText(file.get(), HidD_GetSerialNumberString, node.serial);
  known.whole = product && manufacturer && serial;
  known.node = std::move(node);
  return known;
}

OpenedHid WindowsHid::Open(const std::string& device) {
  FileHandle file = OpenForExchanges(device);
  if (!file) return {nullptr, static_cast<int>(GetLastError())};
  const auto capabilities = CapabilitiesOf(file.get());
  if (!capabilities) return {nullptr, ERROR_DEVICE_NOT_CONNECTED};
  HidD_SetNumInputBuffers(file.get(), kKeptReports);
  return {std::make_unique<OverlappedHid>(std::move(file), capabilities->InputReportByteLength,
                                          capabilities->OutputReportByteLength),
          0};
}

int WindowsHid::MayOpen(const std::string& device) {
  return OpenForExchanges(device) ? 0 : static_cast<int>(GetLastError());
}

// The device's name is of no use to a user.
Problem WindowsHid::Explain(const std::string& /*device*/, int error) const {
  switch (error) {
    case 0:
      return {};
    case ERROR_ACCESS_DENIED:
      return {KVUSB_PROBLEM_PERMISSION,
              "Windows does not let you open the board (" + ReasonOf(ERROR_ACCESS_DENIED) + ")."};
    case ERROR_SHARING_VIOLATION:
      return {KVUSB_PROBLEM_IN_USE, "Another program holds the board."};
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_DEV_NOT_EXIST:
    case kNoSuchDevice:
    case ERROR_DEVICE_NOT_CONNECTED:
      return BoardHasLeft();
    default:
      return {KVUSB_PROBLEM_OTHER,
              "The board cannot be opened: " + ReasonOf(static_cast<DWORD>(error)) + "."};
  }
}

std::unique_ptr<HidSystem> ThisSystem() { return std::make_unique<WindowsHid>(); }

}  // namespace quillon
