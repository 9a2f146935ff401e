// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "pdf/cs/rows.h"

// From the runs of CPDFCSBase (a byte count, possibly overlapping) to the row functions (a result
// count, no overlap).

namespace runs {

/// Results of a run of `nbytes` bytes, `components` a pixel, of which the first of each
/// 1 << step_index pixels is kept.
inline size_t results(int nbytes, int components, int step_index) {
  if (nbytes < 1) return 0;
  const auto pixels = static_cast<size_t>(nbytes / components);
  const auto step = size_t{1} << step_index;
  return (pixels + step - 1) >> step_index;
}

/// One run to pixels; `more` is what the row function takes beyond the three common arguments.
template <class Row, class... More>
void to_rgba(Row (CPDFRows::*rows_member)[3], int step_index, int components, _KXRGBA* dst,
             const unsigned char* src, int nbytes, More... more) {
  const size_t n = results(nbytes, components, step_index);
  if (n == 0) return;
  const CPDFRows& rows = rows_for(dst, n * sizeof *dst, src, static_cast<size_t>(nbytes));
  (rows.*rows_member)[step_index](dst, src, n, more...);
}

/// One run to gray and alpha.
inline void to_gray(CPDFRows::Bytes CPDFRows::*row_member, int components, unsigned char* dst,
                    const unsigned char* src, int nbytes) {
  const size_t n = results(nbytes, components, 0);
  if (n == 0) return;
  (rows_for(dst, 2 * n, src, static_cast<size_t>(nbytes)).*row_member)(dst, src, n);
}

}  // namespace runs
