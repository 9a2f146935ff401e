// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

namespace pdfbmp {

/// Bytes that must be readable after a row and after the row above it; they are not changed.
inline constexpr int png_row_slack = 8;

/// Undoes PNG filter type `type` (0 to 4; PNG, clause 9) on the `n` bytes of `row`, in place.
/// `above` is the finished row before it, of as many bytes, zeros for the first; `step` the bytes
/// of a whole pixel, at least 1.
void undo_png_row(int type, unsigned char* row, const unsigned char* above, int n, int step);

}  // namespace pdfbmp
