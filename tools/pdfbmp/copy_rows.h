// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/doc/raster.h"
#include "tools/pdfbmp/picture.h"

enum class Copied { all, unread, unwritten };

/// Writes all rows of a picture, described by `info`, which may differ from its reader's own
/// description in the resolution only. Throws std::bad_alloc where a row does not fit in memory.
Copied copy_rows(const Picture& picture, CPDFRasterWriter& writer, const CPDFRasterInfo& info);
