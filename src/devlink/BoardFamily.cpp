// SPDX-License-Identifier: MIT
#include "devlink/BoardFamily.h"

namespace quillon {

BoardFamily FamilyOf(std::uint16_t product_id) {
  switch (product_id) {
    case 0x0910:
    case 0x1000:
      return BoardFamily::kJoystick;
    case 0x0920:
    case 0x1010:
      return BoardFamily::kSmallJoystick;
    case 0x0710:
    case 0x1300:
      return BoardFamily::kScanMatrix;
    case 0x0510:
    case 0x1100:
      return BoardFamily::kDigitalPorts;
    case 0x0520:
    case 0x1110:
      return BoardFamily::kInputBanks;
    case 0x0800:
    case 0x1200:
      return BoardFamily::kNodeSystem;
    case 0x1400:
    case 0x1500:
      return BoardFamily::kSpi;
    case 0x1600:
    case 0x1700:
      return BoardFamily::kWithoutPages;
    default:
      return BoardFamily::kNone;
  }
}

}  // namespace quillon
