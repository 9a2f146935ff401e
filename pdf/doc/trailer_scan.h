// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "pdf/filter/source.h"

namespace pdfbmp {

/// Offset of the header ("%PDF-" and a version) in the first 1024 bytes; 0 where there is none.
std::int64_t find_header(const CPDFSource& source);

// What to put behind a file whose own trailer is lost. Empty where the scan of the file finds
// nothing to go by. `base` is the offset of the header.

/// A pointer to the last cross-reference stream, which is a trailer too.
std::string suffix_from_xref_stream(const CPDFSource& source, std::int64_t base);

/// A trailer that names the last document catalog.
std::string suffix_from_catalog(const CPDFSource& source, std::int64_t base);

}  // namespace pdfbmp
