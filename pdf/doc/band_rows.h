// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/doc/color_rows.h"

namespace pdfbmp {

/// Rows in rgb8 of any colour space, by colour bitmaps of bands of rows of up to 256 kB each: every
/// band is an image record of its own that borrows the colour space and reads on in the samples, so
/// that memory stays flat and no picture is reduced. Null where memory failed or a row is too long.
std::unique_ptr<CPDFColorRows> make_band_rows(CPDFCSBase& cs,
                                              std::unique_ptr<CPDFSampleRows> samples);

}  // namespace pdfbmp
