// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "kx/bmp.h"
#include "pdf/doc/raster.h"

namespace pdfbmp {

// A bitmap of the image unit as a picture that is read from the top, in the smallest format that
// loses nothing. The bitmap must outlive the reader. Null where the bitmap has no pixels or memory
// failed.

/// gray1 or gray8 where every pixel is opaque and gray, rgb8 where every pixel is opaque, else
/// rgba8.
PDFBMP_API std::unique_ptr<CPDFRasterReader> make_bitmap_reader(const CKXBmp32& bmp);

/// gray1 or gray8 where every pixel is opaque, else gray_alpha8.
PDFBMP_API std::unique_ptr<CPDFRasterReader> make_bitmap_reader(const CKXBmpGray& bmp);

/// Opacity as gray8: 0 transparent, 255 opaque.
PDFBMP_API std::unique_ptr<CPDFRasterReader> make_bitmap_reader(const CKXBmp8& bmp);

/// Indices into the 256 colours at `palette`, which are copied. A bitmap of 0 and 255 alone comes
/// as two colours at 1 bit.
PDFBMP_API std::unique_ptr<CPDFRasterReader> make_bitmap_reader(const CKXBmp8& bmp,
                                                                const _KXRGBA* palette);

}  // namespace pdfbmp
