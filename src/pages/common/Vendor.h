// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quillon {

// Who makes the boards, and where to find them.
inline QString VendorName() { return QStringLiteral("Quillon Devices"); }
inline QString VendorWebSite() { return QStringLiteral("www.quillon-devices.example"); }

// Says why a control is disabled that has no function yet.
inline QString LaterVersion() { return QStringLiteral("Comes with a later version of Quillon."); }

}  // namespace quillon
