// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/raster.h"

int CPDFRasterInfo::bits_per_pixel() const {
  switch (format) {
    case CPDFPixelFormat::gray1:
      return 1;
    case CPDFPixelFormat::gray8:
      return 8;
    case CPDFPixelFormat::gray_alpha8:
      return 16;
    case CPDFPixelFormat::indexed:
      return index_bits;
    case CPDFPixelFormat::rgb8:
      return 24;
    case CPDFPixelFormat::rgba8:
      return 32;
  }
  return 0;
}

std::int64_t CPDFRasterInfo::row_bytes() const {
  return (std::int64_t{width} * bits_per_pixel() + 7) / 8;
}
