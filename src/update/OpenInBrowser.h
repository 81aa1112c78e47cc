// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "update/WebAddress.h"

namespace quillon {

// Shows a web address in the user's browser. False if there is none that starts, and for all that
// IsWebAddress() refuses.
bool OpenInBrowser(const QString& address);

// Opens a document with the user's program for it. False if the file does not exist, in which case
// the desktop is not asked, or if there is no such program.
bool OpenDocument(const QString& path);

}  // namespace quillon
