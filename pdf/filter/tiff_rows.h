// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

namespace pdfbmp {

/// Undoes TIFF predictor 2 (TIFF 6.0, section 14) on the `n` bytes of `row`, in place: each sample
/// is the difference to that of the same colour in the pixel before. `bits` is 1, 2, 4, 8 or 16 a
/// sample (16 with the high byte first), `colors` at least 1.
void undo_tiff_row(unsigned char* row, int n, int colors, int bits);

}  // namespace pdfbmp
