// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

#include "pdf/filter/filter.h"
#include "pdf/filter/work_clock.h"
#include "pdf/obj/object.h"
#include "pdf/obj/xref.h"

namespace pdfbmp {

/// Where an inline image's data stands in its content stream.
struct InlineData {
  std::size_t begin = 0;
  std::size_t length = 0;
  std::size_t next = 0;  ///< The byte after EI.
};

/// Finds the data that follows ID, which ends before `at`. Nothing in the format says where it
/// ends, and the data may hold the letters EI. In this order: the length that the dictionary gives
/// (PDF 2.0) or that its size and colours imply where there is no filter, if EI stands behind it;
/// the place where the filters see their own end; the first EI after which the content goes on like
/// content. `named` are the ColorSpace resources, or null. Where `clock`, which may be null, is
/// over, the data ends where it was found to reach.
InlineData find_inline_data(std::string_view content, std::size_t at, const CPDFDictionary& dict,
                            const CPDFDictionary* named, CPDFXRefTable* xref,
                            const CPDFFilterLimits& limits, CPDFWorkClock* clock = nullptr);

}  // namespace pdfbmp
