// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/copy_rows.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace {

// The clock is looked at after so many pixels, since that takes time too.
constexpr int pixels_per_look = 1 << 14;

// Whether row `y` is below all data that arrived, with too much of the picture after it.
bool ends_above(int y, const Picture& picture, const CPDFRasterInfo& info,
                const RowBounds& bounds) {
  if (std::int64_t{info.height - y} * info.width <= bounds.max_blank_pixels) return false;
  return delivery_of(picture).rows <= std::int64_t{y} * picture.source_rows / info.height;
}

}  // namespace

Copied copy_rows(const Picture& picture, CPDFRasterWriter& writer, const CPDFRasterInfo& info,
                 RowBounds& bounds) {
  std::vector<unsigned char> row(static_cast<std::size_t>(info.row_bytes()));
  const int rows_per_look = std::clamp(pixels_per_look / info.width, 1, 16);
  if (!writer.begin(info)) return Copied::unwritten;
  bool late = false;
  for (int y = 0; y < info.height; ++y) {
    if (!late && !picture.reader->read_row(row.data())) return Copied::unread;
    // Where not even the first row arrived the others would only be blank, however many.
    if (y == 0 && delivery_of(picture).rows == 0) return Copied::unread;
    if (!late && ends_above(y, picture, info, bounds)) {
      bounds.rows = y;
      return Copied::cut;
    }
    if (!writer.write_row(row.data())) return Copied::unwritten;
    const int done = y + 1;
    if (!late && done % rows_per_look == 0 && done < info.height &&
        bounds.time.is_over(bounds.pixels)) {
      late = true;
      bounds.rows = done;
      std::fill(row.begin(), row.end(), static_cast<unsigned char>(0));
    }
  }
  if (!writer.finish()) return Copied::unwritten;
  return late ? Copied::late : Copied::all;
}
