// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/filter/filter.h"

namespace pdfbmp {

/// Undoes the predictor that the parameters of a Flate or LZW filter name (ISO 32000-2, 7.4.4.4).
/// Without one the result is `decoded` itself. Null, with the reason in the report, where the
/// parameters describe no row, a row beyond the limits, or memory failed.
std::unique_ptr<CPDFStream> add_predictor(std::unique_ptr<CPDFStream> decoded,
                                          const CPDFFilterSetup& setup);

}  // namespace pdfbmp
