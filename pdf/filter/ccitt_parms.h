// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/filter/filter.h"

/// The parameters of CCITTFaxDecode (ISO 32000-2, table 11).
struct CCITTParms {
  explicit CCITTParms(const CPDFFilterSetup& setup);

  int k;  ///< < 0: T.6; 0: T.4, one-dimensional; > 0: T.4, each row says which.
  bool end_of_line;
  bool byte_align;
  int columns;
  int rows;  ///< Rows wanted; 0: not known.
  bool end_of_block;
  bool black_is_1;
  int tolerated;  ///< Damaged rows.
};
