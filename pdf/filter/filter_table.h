// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/filter/filter.h"

namespace pdfbmp {

/// One filter of ISO 32000-2, table 6.
struct FilterEntry {
  const char* name;
  const char* abbreviation;  ///< Of inline images, table 92; the name itself where there is none.
  CPDFFilterMaker make;
};

/// The entry of a filter given by either of its names; null where it is unknown.
const FilterEntry* find_filter(const char* name);

}  // namespace pdfbmp
