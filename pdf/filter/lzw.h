// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/filter/filter.h"

namespace pdfbmp {

/// LZWDecode (ISO 32000-2, 7.4.4) with its predictors.
std::unique_ptr<CPDFStream> make_lzw(std::unique_ptr<CPDFStream> input,
                                     const CPDFFilterSetup& setup);

}  // namespace pdfbmp
