// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "pdf/image/image.h"

/// What the requests must give, worked out bit by bit and sample by sample, with nothing taken from
/// the library but the image's description and its colour space. Rows are read from `stream`. The
/// result is the bitmap's memory, stride bytes and all.
namespace image_reference {

/// The colour bitmap at full (1), half (2) or quarter (4) size, before the colour-key pass.
std::vector<unsigned char> color(const CPDFImage& image, int step, CPDFStream& stream);
/// The colour-key pass over such a bitmap.
void clear_key(const CPDFImage& image, std::vector<unsigned char>& bitmap);
std::vector<unsigned char> gray(const CPDFImage& image, CPDFStream& stream);
/// One-bit rows of opacity: `zero` for a 0 bit, `one` for a 1 bit.
std::vector<unsigned char> bits(const CPDFImage& image, int zero, int one, CPDFStream& stream);
/// Bytes of opacity, complemented or not.
std::vector<unsigned char> bytes(const CPDFImage& image, bool complement, CPDFStream& stream);
/// The index bitmap at a scale.
std::vector<unsigned char> mono(const CPDFImage& image, int step, CPDFStream& stream);

}  // namespace image_reference
