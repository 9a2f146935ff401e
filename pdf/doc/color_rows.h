// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "pdf/doc/raster.h"
#include "pdf/doc/sample_rows.h"
#include "pdf/image/image.h"

/// The opaque rows of a picture from the top, at the image's own size.
class CPDFColorRows {
 public:
  virtual ~CPDFColorRows() = default;

  /// gray1, gray8, indexed or rgb8; `width` and `height` are the image's.
  const CPDFRasterInfo& info() const { return info_; }

  /// Writes the next row; zeros where it cannot be read. `key` takes the row's opacity by the
  /// colour key, `width` bytes, where the layout has one; it is null otherwise.
  virtual void read(unsigned char* dst, unsigned char* key) = 0;

 protected:
  CPDFRasterInfo info_;
};

namespace pdfbmp {

/// The rows of an image of one or more components through its colour space, in the smallest form
/// that its space tells beforehand:
///
///     one component, black and white, 1 bit    gray1
///     one component, all colours gray          gray8
///     Indexed, and any other 1 bit             indexed, at its own bits where Decode allows
///     all others                               rgb8
///
/// `packed` false keeps to whole bytes a pixel (gray8, rgb8), as a picture with alpha needs. The
/// image, loaded and with stream and colour space, must outlive the result. Null where the layout
/// cannot be read or memory failed.
std::unique_ptr<CPDFColorRows> make_color_rows(CPDFImage& image, CPDFSampleLayout layout,
                                               bool packed);

}  // namespace pdfbmp
