// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/filter/filter.h"

namespace pdfbmp {

/// CCITTFaxDecode (ISO 32000-2, 7.4.6; ITU-T T.4 and T.6). Rows are bounded by the height of the
/// image that `setup` tells of.
std::unique_ptr<CPDFStream> make_ccitt(std::unique_ptr<CPDFStream> input,
                                       const CPDFFilterSetup& setup);

}  // namespace pdfbmp
