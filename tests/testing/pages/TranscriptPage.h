// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <source_location>
#include <string>

#include "testing/link/TranscriptLibrary.h"
#include "testing/pages/PageFixture.h"
#include "widgets/CStatusLed.h"

namespace quillon::testing {

// A settings page over a strict transcript: what it sends while no call is expected fails the test.
template <typename Page>
struct TranscriptPage {
  // What the page takes beside its context.
  template <typename... Arguments>
  explicit TranscriptPage(const Arguments&... arguments) : page(board.Context(), arguments...) {}

  // Presses a button, which leads to these calls and to no error.
  void Press(const char* button, const std::string& calls,
             std::source_location where = std::source_location::current()) {
    library.Expect(calls, where);
    Button(page, button).click();
    EXPECT_FALSE(Lamp(page, "Error").IsLit()) << "line " << where.line();
    EXPECT_FALSE(Lamp(page, "Busy").IsLit()) << "line " << where.line();
  }

  TranscriptLibrary library{""};
  PageFixture board{library};
  Page page;
};

// One with a grid.
template <typename Page>
struct TranscriptGridPage : TranscriptPage<Page> {
  using TranscriptPage<Page>::TranscriptPage;

  std::string Row(int row) const { return RowText(grid, row); }

  CGridCtrl& grid = Grid(this->page);
};

}  // namespace quillon::testing
