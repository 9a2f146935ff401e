// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/copy_rows.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace {

// The clock is looked at after about so many pixels at first, and after so many rows at most.
constexpr int pixels_per_look = 1 << 14, most_rows_per_look = 64;

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
  int rows_per_look = std::clamp(pixels_per_look / info.width, 1, most_rows_per_look);
  int next_look = rows_per_look;
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
    if (done != next_look || done == info.height) continue;
    const double used = bounds.time.used(bounds.pixels);
    if (used < 0.25) rows_per_look = std::min(rows_per_look * 2, most_rows_per_look);
    late = used > 1;
    if (late) {
      bounds.rows = done;
      std::fill(row.begin(), row.end(), static_cast<unsigned char>(0));
    } else {
      next_look += rows_per_look;
    }
  }
  if (!writer.finish()) return Copied::unwritten;
  return late ? Copied::late : Copied::all;
}
