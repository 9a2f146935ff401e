// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "kx/bmp.h"
#include "pdf/cs/color_space.h"

namespace image_decoding {

/// Clears the alpha of every pixel whose b, g and r each lie within the box that the key's two
/// colours span, once converted.
void clear_color_key(CKXBmp32& bmp, CPDFCSBase& cs, const PDF_COLOR& key_min,
                     const PDF_COLOR& key_max);

}  // namespace image_decoding
