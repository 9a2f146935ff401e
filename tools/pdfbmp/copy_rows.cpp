// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/copy_rows.h"

#include <cstddef>
#include <vector>

Copied copy_rows(const Picture& picture, CPDFRasterWriter& writer, const CPDFRasterInfo& info) {
  std::vector<unsigned char> row(static_cast<std::size_t>(info.row_bytes()));
  if (!writer.begin(info)) return Copied::unwritten;
  for (int y = 0; y < info.height; ++y) {
    if (!picture.reader->read_row(row.data())) return Copied::unread;
    // Where not even the first row arrived the others would only be blank, however many.
    if (y == 0 && delivery_of(picture).rows == 0) return Copied::unread;
    if (!writer.write_row(row.data())) return Copied::unwritten;
  }
  return writer.finish() ? Copied::all : Copied::unwritten;
}
