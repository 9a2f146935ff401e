// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

namespace pdfbmp {

/// Bytes that must be readable after a row and after the row above it; they are not changed.
inline constexpr int png_row_slack = 8;

/// Undoes PNG filter type `type` (0 to 4; PNG, clause 9) on the `n` bytes of `row`, in place.
/// `above` is the finished row before it, of as many bytes, zeros for the first; `step` the bytes
/// of a whole pixel, at least 1.
void undo_png_row(int type, unsigned char* row, const unsigned char* above, int n, int step);

/// Type 4 (Paeth) on the whole pixels of a row, in two forms that do the same; returns the bytes
/// done. There are steps of 1, 2, 3, 4, 6 and 8; the second form needs SSE4.1.
template <int Step>
int undo_paeth_lanes(unsigned char* row, const unsigned char* above, int n);
template <int Step>
int undo_paeth_sse41(unsigned char* row, const unsigned char* above, int n);

}  // namespace pdfbmp
