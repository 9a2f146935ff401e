// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/filter/filter.h"

namespace pdfbmp {

/// ASCII85Decode (ISO 32000-2, 7.4.3).
std::unique_ptr<CPDFStream> make_ascii85(std::unique_ptr<CPDFStream> input,
                                         const CPDFFilterSetup& setup);

}  // namespace pdfbmp
