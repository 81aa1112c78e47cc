// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/GridRows.h"

namespace quillon {

// The rules of a grid whose rows are digital inputs in pairs, 1-2, 3-4 and so on, as rotary
// encoders are wired: line A to the odd input, line B to the even one. The decoding is chosen in
// the odd row; the even row shows what that makes of it.
class EncoderPairs {
 public:
  // `inputs` are all rows of the grid, from row 1 on, and have the mode column; both outlive the
  // object. `rotary` is the mode's code for "Rotary", whose opposite is mode 0.
  EncoderPairs(CGridCtrl& grid, GridRows& inputs, int mode_column, int encoder_column,
               std::uint32_t rotary);

  // Takes the choice out of the even rows' encoder cells; after the cells were built.
  void BuildCells();

  // After the encoder cells were filled: gives the even rows the texts of line B for their codes.
  void ShowLineB();
  // The same for boards that keep one code a pair: the even rows take the odd rows' codes.
  void CopyToLineB();

  // After an edit of the row's mode or decoding, when the cell has its new code. A pair is Rotary
  // on both inputs or on neither.
  void OnEndEdit(int row, int column);

  // Paints the rows so that a pair reads as a unit, and the clicked row apart from that.
  void PaintBands(int clicked_row = 0);

 private:
  static int PartnerOf(int row) { return row % 2 == 0 ? row - 1 : row + 1; }
  void CopyPairToLineB(int odd_row);

  CGridCtrl& grid_;
  GridRows& inputs_;
  int mode_column_;
  int encoder_column_;
  std::uint32_t rotary_;
};

}  // namespace quillon
