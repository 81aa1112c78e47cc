// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "hidraw/HidrawList.h"
#include "kvusb/HidLibrary.h"

struct hid_device_;

namespace quillon {

struct HidClose {
  void operator()(hid_device_* handle) const;
};
using HidHandle = std::unique_ptr<hid_device_, HidClose>;

// A node opened through hidapi, or the system's reason (errno) why not.
struct OpenedHid {
  HidHandle handle;
  int error = 0;
};

OpenedHid OpenHid(const std::string& device);

// 0, or the errno for which this user could not open the node.
int MayOpenHid(const std::string& device);

struct HidOptions {
  std::filesystem::path sys = "/sys";
  // Seams for tests, which run as root and do not want to wait.
  std::function<OpenedHid(const std::string& device)> open = OpenHid;
  std::function<int(const std::string& device)> may_open = MayOpenHid;
  std::chrono::milliseconds answer_limit{2000};
  std::chrono::milliseconds erase_limit{10000};
};

// The boards on the machine's USB.
//
// Detection reads the list that everybody may read and opens no board: opening takes the kernel
// 50 ms for each board on USB, so it waits for the first exchange. A board that may not be opened
// is listed all the same, and DescribeProblem() says why it does not work. A record is recognised
// by a mark and a number in library_a; the number is the board's from its first detection until it
// is closed, so a record from before is dead.
class HidBoards final : public HidLibrary {
 public:
  explicit HidBoards(HidOptions options = {});
  ~HidBoards() override;

  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t type) override;
  std::int32_t WriteData(DeviceRecord& record, PacketSpan packet) override;
  std::int32_t ReadData(DeviceRecord& record, PacketSpan packet) override;
  std::int32_t CloseDevices(std::span<DeviceRecord> records) override;
  Problem DescribeProblem(const DeviceRecord* record) override;

 private:
  struct Port;

  Port* PortOf(const DeviceRecord& record) const;
  Port& PortFor(const HidrawNode& node);
  void Fill(DeviceRecord& record, const HidrawNode& node, const Port& port) const;
  void CloseMissing();
  bool Open(Port& port) const;

  HidOptions options_;
  std::vector<HidrawNode> nodes_;  // as last seen
  std::map<std::uint32_t, std::unique_ptr<Port>> ports_;
  std::uint32_t next_number_ = 1;
  std::error_code list_error_;
};

}  // namespace quillon
