// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/filter/ccitt_bits.h"

/// A row of a fax picture as the places where its colour changes: the first black pixel, the first
/// white one after it, and so on, in strictly ascending order.
struct CCITTRow {
  int* changes = nullptr;  ///< Room for columns + slack of them.
  int count = 0;

  static constexpr int slack = 8;

  /// Black where an odd number of changes has come.
  int color() const { return count & 1; }

  /// The colour changes at `place`, which is not before the last change. Two changes at one place
  /// are none.
  void change(int place) {
    if (count > 0 && changes[count - 1] == place) {
      --count;
    } else {
      changes[count++] = place;
    }
  }

  /// Places beyond the last change, for readers that look ahead.
  void finish(int columns) {
    for (int i = 0; i < 4; ++i) changes[count + i] = columns;
  }
};

namespace pdfbmp {

/// Decodes a one-dimensional row (T.4, 4.1) into `row`. False where the bits are no such row; those
/// that make no sense are then still to come.
bool decode_ccitt_1d(CCITTBits& bits, CCITTRow& row, int columns);

/// Decodes a two-dimensional row (T.4, 4.2; T.6, 2.2), told against the finished row `above`.
bool decode_ccitt_2d(CCITTBits& bits, const CCITTRow& above, CCITTRow& row, int columns);

/// Writes the (columns + 7) / 8 bytes of a finished row.
void paint_ccitt_row(const CCITTRow& row, int columns, bool black_is_1, unsigned char* dst);

}  // namespace pdfbmp
