// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quillon {

// Who makes the boards, and where to find them. The build may be given others.
QString VendorName();
// Without "https://", as it is shown.
QString VendorWebSite();

// The version lists on the vendor's server.
constexpr int kProgramList = 32778;
constexpr int kFirmwareList = 32779;
constexpr int kNodeList = 32780;

// Where a list stands: below the address in the environment's QUILLON_UPDATE_BASE, else below the
// one that the build was given. Empty without either, and for any other list.
QString UpdateAddress(int list);

}  // namespace quillon
