// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "pdf/filter/filter.h"

namespace pdfbmp {

/// A stream that delivers the first `most` bytes of `stream`; more than that is damage, told in the
/// report. It stands behind a filter: what the next one reads in vain need not have an end (a few
/// bytes deflated again and again make any number of blanks). Null where memory failed.
std::unique_ptr<CPDFStream> make_bounded_stream(std::unique_ptr<CPDFStream> stream,
                                                std::int64_t most,
                                                std::shared_ptr<CPDFDecodeReport> report);

}  // namespace pdfbmp
