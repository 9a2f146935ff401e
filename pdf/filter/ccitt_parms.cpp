// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/ccitt_parms.h"

#include <algorithm>

#include "pdf/filter/parms.h"
#include "pdf/obj/object.h"

CCITTParms::CCITTParms(const CPDFFilterSetup& setup) {
  const auto integer = [&](const char* key, int otherwise) {
    return pdfbmp::int_parm(setup.parms, setup.xref, key, otherwise);
  };
  const auto boolean = [&](const char* key, bool otherwise) {
    return pdfbmp::bool_parm(setup.parms, setup.xref, key, otherwise);
  };
  k = integer("K", 0);
  end_of_line = boolean("EndOfLine", false);
  byte_align = boolean("EncodedByteAlign", false);
  columns = integer("Columns", 1728);
  end_of_block = boolean("EndOfBlock", true);
  black_is_1 = boolean("BlackIs1", false);
  tolerated = integer("DamagedRowsBeforeError", 0);
  // The image has no use for rows beyond its height. Rows counts only where nothing in the data
  // marks its end.
  const int height = pdfbmp::int_parm(setup.image, setup.xref, CPDFDictionary::sm_tag_height,
                                      pdfbmp::int_parm(setup.image, setup.xref, "H", 0));
  rows = std::max(height, 0);
  const int own_rows = end_of_block ? 0 : integer("Rows", 0);
  if (own_rows > 0) rows = rows > 0 ? std::min(rows, own_rows) : own_rows;
}
