// SPDX-License-Identifier: MIT
#pragma once

#include <QTabWidget>
#include <functional>
#include <vector>

#include "devlink/Products.h"
#include "pages/common/PageContext.h"
#include "settings/Setting.h"

namespace quillon {

class CDeviceConfigPage;
class CSettingsPage;
class StackRun;

// The tabs of one board family: "Device Configuration" first, then the settings pages, which stay
// disabled until the report on a board finds that its firmware suits. Made at the start of the
// program and kept; what a tab holds is built when it is first needed.
class CPageSet : public QTabWidget {
  Q_OBJECT

 public:
  CPageSet(PageContext context, BoardFamily family, QWidget* parent);

  // Shows the set for the current board, with a fresh report on it.
  void ShowBoard();

  // The device-wide defaults: fills every page with its defaults and sends it to the board. If a
  // page fails, the others follow all the same, and one message at the end says so. The caller
  // makes sure that no other exchange is under way.
  void LoadDeviceDefaults();

  // Stops what RunStarted() announced, for good. Does nothing without a run.
  void AbortRun();

  // Whether any settings page exists yet.
  bool HasSettingsPages() const;

  // Makes the lamps of all pages dark and stops their blinking.
  void ResetIndicators();

  // Enables the pages from the second tab on, as the table of products says for a board in this
  // state.
  void EnablePages(bool flash_mode_active, bool firmware_suits);

  // A page, which is built if this is the first call for it. Null for a tab without a page. `index`
  // counts tabs from 0.
  CSettingsPage* Page(int index);

 Q_SIGNALS:
  void RefreshRequested();
  // Around a flash update. In between, nothing else may be chosen in the window.
  void RunStarted();
  void RunEnded();

 protected:
  using Factory = std::function<CSettingsPage*()>;

  // Adds the tab of a settings page if the family has that page, whose title it takes.
  template <typename PageClass>
  void AddPage(std::string_view id, const char* icon) {
    const auto* const page = FindPage(product_.family, id);
    if (page == nullptr) return;
    AddPage(icon, QString::fromUtf8(page->title.data(), static_cast<qsizetype>(page->title.size())),
            [this, page] { return new PageClass(context_, *page); });
  }

  // Adds the next tab. Without a factory it stays disabled, and its tooltip says that it is still
  // to come.
  void AddPage(const char* icon, const QString& title, Factory factory = {});

 private:
  struct Slot {
    Factory factory;
    CSettingsPage* page = nullptr;
  };

  void SetPageEnabled(int index, bool enabled);

  PageContext context_;
  const Product& product_;  // any of the family
  StackRun* run_;           // of whichever page
  CDeviceConfigPage* config_;
  std::vector<Slot> slots_;
};

}  // namespace quillon
