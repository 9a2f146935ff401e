// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/filter/filter.h"

namespace pdfbmp {

/// JBIG2Decode (ISO 32000-2, 7.4.7) with its JBIG2Globals: rows of 1 bit a pixel, 0 is black. A
/// helper program decodes (pdf/filter/jbig2_helper.h); where it is missing or ends in any other way
/// than its own, the report says so and there are no rows.
///
/// Rows are as wide as the image dictionary says, cut or filled up with white, and end at its
/// Height. Of data that is cut or broken, the page with the segments before the break is given,
/// unless they drew nothing.
std::unique_ptr<CPDFStream> make_jbig2(std::unique_ptr<CPDFStream> input,
                                       const CPDFFilterSetup& setup);

/// The segments that the parameters' JBIG2Globals hold, decoded; null where there are none.
std::unique_ptr<CPDFStream> open_jbig2_globals(const CPDFFilterSetup& setup);

}  // namespace pdfbmp
