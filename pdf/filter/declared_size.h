// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/filter/filter.h"

namespace pdfbmp {

/// What the dictionary of an image says about its size; 0 for what it does not say. Where it says
/// something it wins over a codec's own header, since whoever reads the samples counts by it.
struct DeclaredSize {
  int width = 0;
  int height = 0;
};

DeclaredSize declared_size(const CPDFFilterSetup& setup);

}  // namespace pdfbmp
