// SPDX-License-Identifier: MIT
#pragma once

#include <QTabWidget>
#include <functional>
#include <vector>

#include "pages/common/PageContext.h"
#include "settings/Setting.h"

namespace quillon {

class CSettingsPage;

// Tabs that hold any widget, many of them settings pages. What a tab holds is built when it is
// first needed.
class CTabSet : public QTabWidget {
  Q_OBJECT

 public:
  CTabSet(PageContext context, QWidget* parent);

  // What a tab holds, which is built if this is the first call for it. Null for a tab that is still
  // to come. `index` counts tabs from 0.
  QWidget* Tab(int index);
  // The same, as a settings page; null for any other widget.
  CSettingsPage* Page(int index);

  // Fills every settings page with its defaults and sends it to the board. If a page fails, the
  // others follow all the same, and one message at the end says so. The caller makes sure that no
  // other exchange is under way.
  void LoadDeviceDefaults();

  // Makes the lamps of all pages dark and stops their blinking.
  void ResetIndicators();

 Q_SIGNALS:
  // Close all boards and detect them again.
  void RefreshRequested();

 protected:
  using Factory = std::function<QWidget*()>;

  // Adds the next tab, disabled; what it holds is made when it is first needed.
  void AddTab(const char* icon, const QString& title, Factory factory);
  // Adds the tab of a settings page, whose title it takes.
  template <typename PageClass>
  void AddPage(const struct Page& page, const char* icon) {
    AddTab(icon, QString::fromUtf8(page.title.data(), static_cast<qsizetype>(page.title.size())),
           [this, &page] { return new PageClass(context_, page); });
    slots_.back().settings = true;
  }
  // Enables a tab, or says in its tooltip why it is not.
  void SetTabReady(int index, bool ready, const QString& why_not);
  // Updates the lines of all pages that say where their values come from.
  void ShowOrigins();

  const PageContext& Context() const { return context_; }

 private:
  struct Slot {
    Factory factory;
    bool settings = false;
    QWidget* widget = nullptr;
  };

  // The settings pages that are built already.
  template <typename Visit>
  void ForEachPage(const Visit& visit) const;

  PageContext context_;
  std::vector<Slot> slots_;
};

}  // namespace quillon
