// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <qpdf/QPDFObjectHandle.hh>
#include <vector>

#include "pdf/doc/found_image.h"
#include "pdf/doc/object_table.h"

namespace pdfbmp {

/// Finds the images of the pages `first` to `last` (1-based) of `pages`, reading at most
/// `content_budget` bytes of decoded content. The caller holds the table's lock.
std::vector<CPDFFoundImage> walk_images(CPDFObjectTable& table,
                                        const std::vector<QPDFObjectHandle>& pages, int first,
                                        int last, std::int64_t content_budget);

}  // namespace pdfbmp
