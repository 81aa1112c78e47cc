// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "devlink/Products.h"
#include "firmware/NodeStatus.h"
#include "pages/common/CTabSet.h"

namespace quillon {

class CDeviceConfigPage;

// The tabs of one board family: "Device Configuration" first, then the settings pages, which stay
// disabled until the report on a board finds that its firmware suits. Made at the start of the
// program and kept.
class CPageSet : public CTabSet {
  Q_OBJECT

 public:
  CPageSet(PageContext context, BoardFamily family, QWidget* parent);

  // Shows the set for the current board, with a fresh report on it. `nodes` is what the board has
  // just answered when it was asked for its nodes, if it was.
  void ShowBoard(std::optional<NodeStatusAnswer> nodes = std::nullopt);

  // Enables the pages from the second tab on, as the table of products says for a board in this
  // state, and shows the first one.
  void EnablePages(bool flash_mode_active, bool firmware_suits);
  // The same, but the page that is shown stays while it is enabled.
  void EnableTabs(bool flash_mode_active, bool firmware_suits);

 protected:
  // Adds the tab of a settings page if the family has that page.
  template <typename PageClass>
  void AddPage(std::string_view id, const char* icon) {
    if (const auto* const page = FindPage(product_.family, id))
      CTabSet::AddPage<PageClass>(*page, icon);
  }

  CDeviceConfigPage& Config() { return *config_; }

 private:
  QString WhyNotReady(int index) const;

  const Product& product_;  // any of the family
  CDeviceConfigPage* config_;
};

}  // namespace quillon
