// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/GridRows.h"

namespace quillon {

// The rules of a grid whose rows are digital inputs in pairs, 1-2, 3-4 and so on, as rotary
// encoders are wired: line A to the odd input, line B to the even one. The user chooses the
// decoding in the odd row; the even row shows what it means for line B.
class EncoderPairs {
 public:
  // `inputs` are all rows of the grid, from row 1 on, and have the mode column; both outlive the
  // object. `rotary` is the mode's code for "Rotary", whose opposite is mode 0.
  EncoderPairs(CGridCtrl& grid, GridRows& inputs, int mode_column, int encoder_column,
               std::uint32_t rotary);

  // Makes the even rows' encoder cells plain, without a choice. To be called after the cells were
  // built.
  void BuildCells();

  // Gives the even rows the texts of line B for their codes. To be called after the encoder cells
  // were filled.
  void ShowLineB();
  // The same for boards that store one code for a pair: the even rows take the odd rows' codes.
  void CopyToLineB();

  // To be called after an edit of the row's mode or decoding, when the cell has its new code. Keeps
  // a pair Rotary on both inputs or on neither.
  void OnEndEdit(int row, int column);

  // Paints the rows in bands, so that a pair reads as a unit, and the clicked row in its own
  // colour.
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
