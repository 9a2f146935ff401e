// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "pdf/doc/raster.h"
#include "tools/pdfbmp/picture.h"

enum class Copied { all, unread, unwritten, cut };

/// Blank pixels that are written below what arrived; a picture that would have more is cut.
inline constexpr std::int64_t most_blank_pixels = std::int64_t{1} << 26;

/// Writes all rows of a picture, described by `info`, which may differ from its reader's own
/// description in the resolution and in having fewer rows. Where `rows` is given and the data ends
/// far above the last row, writing stops there, and `rows` is how many are worth writing. Throws
/// std::bad_alloc where a row does not fit in memory.
Copied copy_rows(const Picture& picture, CPDFRasterWriter& writer, const CPDFRasterInfo& info,
                 int* rows = nullptr);
