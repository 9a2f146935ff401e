// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/copy_rows.h"

#include <cstddef>
#include <vector>

namespace {

// Whether row `y` is below all data that arrived, with too much of the picture after it. One whose
// time is over is not begun anew to end there.
bool ends_above(int y, const Picture& picture, const CPDFRasterInfo& info,
                const RowBounds& bounds) {
  if (std::int64_t{info.height - y} * info.width <= bounds.max_blank_pixels) return false;
  if (picture.loaded.report != nullptr && picture.loaded.report->late) return false;
  return delivery_of(picture).rows <= std::int64_t{y} * picture.source_rows / info.height;
}

}  // namespace

Copied copy_rows(const Picture& picture, CPDFRasterWriter& writer, const CPDFRasterInfo& info,
                 RowBounds& bounds) {
  std::vector<unsigned char> row(static_cast<std::size_t>(info.row_bytes()));
  if (!writer.begin(info)) return Copied::unwritten;
  for (int y = 0; y < info.height; ++y) {
    if (!picture.reader->read_row(row.data())) return Copied::unread;
    // Where not even the first row arrived the others would only be blank, however many.
    if (y == 0 && delivery_of(picture).rows == 0) return Copied::unread;
    if (ends_above(y, picture, info, bounds)) {
      bounds.rows = y;
      return Copied::cut;
    }
    if (!writer.write_row(row.data())) return Copied::unwritten;
  }
  return writer.finish() ? Copied::all : Copied::unwritten;
}
