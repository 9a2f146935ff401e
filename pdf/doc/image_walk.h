// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <qpdf/QPDFObjectHandle.hh>
#include <vector>

#include "pdf/doc/found_image.h"
#include "pdf/doc/object_table.h"
#include "pdf/doc/search_budget.h"

namespace pdfbmp {

/// Finds the images of the pages `first` to `last` (1-based) of `pages`, within the budget. The
/// caller holds the table's lock.
std::vector<CPDFFoundImage> walk_images(CPDFObjectTable& table,
                                        const std::vector<QPDFObjectHandle>& pages, int first,
                                        int last, SearchBudget& budget);

}  // namespace pdfbmp
