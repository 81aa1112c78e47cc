// SPDX-License-Identifier: MIT
#include "devlink/Detection.h"

#include "devlink/Exchange.h"

namespace quillon {
namespace {

void AskIdentity(HidLibrary& library, DeviceRecord& record) {
  HidPacket packet{};
  packet[kCommandByte] = kIdentityQuery;
  if (!SendPacket(library, record, packet) || packet[kEchoByte] != kIdentityQuery) return;
  record.queried_version = static_cast<std::uint16_t>(packet[1] * 256 + packet[2]);
  record.firmware_present = packet[3];
}

}  // namespace

Detected DetectBoards(HidLibrary& library, DeviceTable& table, std::uint32_t type) {
  std::uint32_t found = 0;
  if (library.DetectHID(found, table.Free(), type) == 0) return {};
  const std::uint32_t first = table.Count();
  const std::uint32_t listed = table.Append(found, type);
  for (std::uint32_t i = first; i < first + listed; ++i) {
    if (type != KVUSB_TYPE_FIRMWARE) AskIdentity(library, table.Record(i));
    table.SetProblem(i, library.DescribeProblem(&table.Record(i)));
  }
  return {found, listed};
}

bool CloseBoards(HidLibrary& library, DeviceTable& table) {
  return library.CloseDevices(table.Boards()) != 0;
}

}  // namespace quillon
