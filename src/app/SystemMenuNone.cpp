// SPDX-License-Identifier: MIT
#include "app/CMainDialog.h"

namespace quillon {

// Window managers here have no menu that a program adds to; Help has the entry.
void CMainDialog::AddAboutToSystemMenu() {}

}  // namespace quillon
