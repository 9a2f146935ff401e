// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "kx/alloc.h"
#include "kx/bmp.h"
#include "pdf/obj/stream.h"

// How every request reads its rows. The first source row goes to the last row of the bitmap's
// memory, each further kept row to the row before it. A reduced bitmap keeps source rows 0, Step,
// 2 * Step, ...; the rows in between are read and dropped. A row that cannot be read is blank, and
// the walk goes on with the next. One that arrives short is converted as if it were whole: its
// missing bytes are those of the row before it, zero before the first.

namespace image_decoding {

/// The rows (or samples of a row) that a walk with this step keeps.
template <int Step>
constexpr int kept_of(int source_count) {
  return static_cast<int>((std::int64_t{source_count} + Step - 1) / Step);
}

/// Whether the rows to be dropped after the last kept row are read too. Only who reads on from the
/// same stream could tell.
enum class AfterLast { stop, read_on };

/// One source row, zeroed, for as long as a walk runs.
class RowBuffer {
 public:
  /// `bytes` of a row; one beyond a signed 32-bit count, or memory that fails, leaves it empty. At
  /// least one byte is taken, so that a width below 1 is the bitmap's failure and not this one's.
  explicit RowBuffer(std::int64_t bytes) {
    if (bytes > std::numeric_limits<int>::max()) return;
    size_ = static_cast<int>(std::max<std::int64_t>(bytes, 0));
    const auto taken = static_cast<std::size_t>(std::max(size_, 1));
    data_ = static_cast<unsigned char*>(KXAlloc(taken));
    if (data_ != nullptr) std::memset(data_, 0, taken);
  }
  ~RowBuffer() { KXFree(data_); }
  RowBuffer(const RowBuffer&) = delete;
  RowBuffer& operator=(const RowBuffer&) = delete;

  unsigned char* data() const { return data_; }
  int size() const { return size_; }

 private:
  unsigned char* data_ = nullptr;
  int size_ = 0;
};

/// Walks the kept rows of a picture of `source_rows` rows. `read(out)` reads the next source row,
/// to wherever it wants (with a step above 1 never to `out`), and returns the count; `convert(out)`
/// turns what was read into the bitmap row at `out`; `fail(out)` deals with one that could not be
/// read.
template <int Step, AfterLast after, class Read, class Convert, class Fail>
void walk_kept_rows(CKXBmp& bmp, int source_rows, Read read, Convert convert, Fail fail) {
  const int rows = std::min(kept_of<Step>(source_rows), bmp.height);
  unsigned char* out = bmp.pixels + std::ptrdiff_t{bmp.height} * bmp.stride;
  for (int row = 0; row < rows; ++row) {
    out -= bmp.stride;
    if (read(out) < 1) {
      fail(out);
    } else {
      convert(out);
    }
    if (after == AfterLast::stop && row + 1 == rows) break;
    for (int dropped = 1; dropped < Step; ++dropped) read(out);
  }
}

/// The walk of nearly all decoders: rows of `buffer`'s size go through it, blank rows are zero.
template <int Step, AfterLast after = AfterLast::stop, class Convert>
void walk_rows(CPDFStream& stream, CKXBmp& bmp, int source_rows, const RowBuffer& buffer,
               Convert convert) {
  walk_kept_rows<Step, after>(
      bmp, source_rows,
      [&](unsigned char*) { return stream.read_block(buffer.data(), buffer.size()); },
      [&](unsigned char* out) { convert(out, buffer.data()); },
      [&](unsigned char* out) { std::memset(out, 0, static_cast<std::size_t>(bmp.stride)); });
}

/// The walk of 8-bit layouts whose bytes are the bitmap's own: rows are read straight into it.
inline void read_rows(CPDFStream& stream, CKXBmp& bmp, int source_rows) {
  walk_kept_rows<1, AfterLast::stop>(
      bmp, source_rows, [&](unsigned char* out) { return stream.read_block(out, bmp.width); },
      [](unsigned char*) {},
      [&](unsigned char* out) { std::memset(out, 0, static_cast<std::size_t>(bmp.stride)); });
}

}  // namespace image_decoding
