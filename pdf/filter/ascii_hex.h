// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/filter/filter.h"

namespace pdfbmp {

/// ASCIIHexDecode (ISO 32000-2, 7.4.2).
std::unique_ptr<CPDFStream> make_ascii_hex(std::unique_ptr<CPDFStream> input,
                                           const CPDFFilterSetup& setup);

}  // namespace pdfbmp
