// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "pdf/doc/raster.h"
#include "tools/pdfbmp/picture.h"

enum class Copied { all, unread, unwritten, cut };

/// Where a picture is cut whose data ends far above its last row.
struct Cut {
  std::int64_t max_blank_pixels;  ///< That may be written below what arrived.
  int rows = 0;                   ///< How many are worth writing, where it was cut.
};

/// Writes all rows of a picture, described by `info`, which may differ from its reader's own
/// description in the resolution and in having fewer rows; or those above the `cut`, where one is
/// given. Throws std::bad_alloc where a row does not fit in memory.
Copied copy_rows(const Picture& picture, CPDFRasterWriter& writer, const CPDFRasterInfo& info,
                 Cut* cut = nullptr);
