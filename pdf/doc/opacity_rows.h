// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/image/image.h"

/// Rows of opacity from the top, one byte a pixel: 0 transparent, 255 opaque.
class CPDFOpacityRows {
 public:
  virtual ~CPDFOpacityRows() = default;
  virtual int width() const = 0;
  virtual int height() const = 0;

  /// Writes the next row's `width` bytes; zeros where it cannot be read.
  virtual void read(unsigned char* dst) = 0;
};

namespace pdfbmp {

/// What a stencil, or the Mask or SMask of an image, is worth as opacity, at its own size. Where
/// `zero_is_opaque` (stencils and Mask) samples count from opaque to transparent. `decode` is the
/// dictionary that may hold a Decode array. A sub-image in colour counts as its gray. The image
/// must outlive the result. Null where it has no stream, or a layout that cannot be read.
std::unique_ptr<CPDFOpacityRows> make_mask_rows(CPDFImage& mask, const CPDFDictionary* dict,
                                                bool zero_is_opaque);

/// The alpha channel of a JPEG 2000 image; null where it has none.
std::unique_ptr<CPDFOpacityRows> make_jpx_alpha_rows(CPDFImage& image);

}  // namespace pdfbmp
