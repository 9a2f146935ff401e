// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/image/image.h"

namespace image_decoding {

/// The 256 colours of a mono bitmap. A 1-bit image's run from the colour of bit 0 to that of bit 1;
/// an 8-bit one's are the gray ramp, falling where Decode runs from high to low.
void fill_mono_palette(const CPDFImage& image, _KXRGBA* palette);

}  // namespace image_decoding
