// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <limits>

#include "pdf/doc/raster.h"
#include "tools/pdfbmp/picture.h"

/// Cut: nothing but blank rows would follow, too many.
enum class Copied { all, unread, unwritten, cut };

/// What ends the writing of rows above the last.
struct RowBounds {
  std::int64_t max_blank_pixels = std::numeric_limits<std::int64_t>::max();
  int rows = 0;  ///< Where they were cut: how many there are.
};

/// Writes all rows of a picture, described by `info`, which may differ from its reader's own
/// description in the resolution and in having fewer rows. Throws std::bad_alloc where a row does
/// not fit in memory.
Copied copy_rows(const Picture& picture, CPDFRasterWriter& writer, const CPDFRasterInfo& info,
                 RowBounds& bounds);
