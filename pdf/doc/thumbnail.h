// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/doc/raster.h"

namespace pdfbmp {

/// A picture reduced so that neither side is longer than `max_side` pixels (at least 1), or
/// `source` itself where it fits already. Each pixel is the average of the box of source pixels
/// that it stands for, colours weighted by their alpha, so that what is transparent lends no
/// colour. Palettes become rgb8 and bits gray8. Holds one row of the source and the sums of one
/// row of boxes. Null where memory failed.
std::unique_ptr<CPDFRasterReader> make_thumbnail(std::unique_ptr<CPDFRasterReader> source,
                                                 int max_side);

}  // namespace pdfbmp
