// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/filter/filter.h"

namespace pdfbmp {

/// JPXDecode (ISO 32000-2, 7.4.9): a CPDFStreamJPX of 1, 3 or 4 components: of an image with two
/// the first three times, of one with more than four the first three. Palettes, channel definitions
/// and YCC are resolved, but for an image whose dictionary has an Indexed ColorSpace: its samples
/// are the indices, not scaled. A dictionary with SMaskInData makes the last of two or four
/// undefined channels the alpha channel.
///
/// Making it reads the header and no more; null where there is no image, or one beyond the limits.
/// Rows are as wide as the image dictionary says, cut or filled up with 0 (black, and no opacity),
/// and end at its Height. Memory for a row of tiles is held at a time: an image of one tile is held
/// whole. Where there are several, colour and alpha decode them one after the other. Cut or broken
/// data gives what decodes.
std::unique_ptr<CPDFStream> make_jpx(std::unique_ptr<CPDFStream> input,
                                     const CPDFFilterSetup& setup);

}  // namespace pdfbmp
