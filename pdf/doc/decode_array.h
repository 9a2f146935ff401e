// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "pdf/doc/sample_rows.h"
#include "pdf/image/image.h"

namespace pdfbmp {

/// The Decode array of an image dictionary (full key or abbreviation) on the scale of its colour
/// space: for each component the values of the lowest and the highest sample. Empty where the array
/// is absent, no array, or the default one. `cs` null is one component of 0..1.
std::vector<CPDFSampleLayout::Range> read_decode(const CPDFDictionary* dict, CPDFXRefTable* xref,
                                                 const CPDFCSBase* cs, int bpc);

}  // namespace pdfbmp
