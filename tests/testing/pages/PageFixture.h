// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>
#include <stdexcept>
#include <string>
#include <vector>

#include "devlink/BoardLink.h"
#include "pages/common/PageContext.h"
#include "pages/common/StackRun.h"
#include "testing/pages/ScriptedPrompts.h"

class QLabel;

namespace quillon {
class CGridCtrl;
class CStatusLed;
}  // namespace quillon

namespace quillon::testing {

// What a page under test stands on: a link to one board, which is current, and scripted prompts.
class PageFixture {
 public:
  // A board that only its record says something of, for transcripts. The library lives as long as
  // the object does.
  explicit PageFixture(HidLibrary& library, std::uint16_t product_id = 0x0910,
                       std::uint16_t version = 0x0282);

  PageContext Context() { return {link, prompts, run}; }

  // Takes the boards that the library finds instead, all three types in the program's order.
  void Detect();

  BoardLink link;
  ScriptedPrompts prompts;
  StackRun run{link.gate};
};

// Controls of a page, by what a screen reader calls them. A missing one ends the test.
template <typename Control>
Control& Named(const QWidget& page, const QString& name) {
  for (auto* const control : page.findChildren<Control*>()) {
    const QStringList called{control->accessibleName(), control->accessibleDescription()};
    if (called.contains(name)) return *control;
  }
  throw std::runtime_error("The page has no control " + name.toStdString());
}
QPushButton& Button(const QWidget& page, const QString& name);
CStatusLed& Lamp(const QWidget& page, const QString& name);
CGridCtrl& Grid(const QWidget& page);
// What a row shows: its toggles as the titles of those that are set, then texts and codes.
std::string RowText(const CGridCtrl& grid, int row);
// All that the page's grids, check boxes, lists and numbers show.
std::vector<std::string> ShownBy(const QWidget& page);
// The line that says where the page's values come from.
QString OriginOf(const QWidget& page);

}  // namespace quillon::testing
