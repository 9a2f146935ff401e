// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/filter/filter.h"

namespace pdfbmp {

/// DCTDecode (ISO 32000-2, 7.4.8): samples of 8 bits, pixel by pixel, as many components as the
/// JPEG has. YCC becomes RGB and YCCK becomes CMYK where the Adobe marker, or without one the
/// ColorTransform parameter, says so; CMYK is never inverted.
///
/// Rows are as wide as the image dictionary says, cut or filled up with 0, and end at its Height.
/// A JPEG whose data breaks off gives the rows before the break; one in several scans, whose rows
/// come all from its last scan, is given as coarse as it arrived. Nothing is read before the first
/// sample is asked for.
std::unique_ptr<CPDFStream> make_dct(std::unique_ptr<CPDFStream> input,
                                     const CPDFFilterSetup& setup);

}  // namespace pdfbmp
