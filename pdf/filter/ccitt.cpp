// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/ccitt.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

#include "kx/alloc.h"
#include "pdf/filter/ccitt_bits.h"
#include "pdf/filter/ccitt_parms.h"
#include "pdf/filter/ccitt_row.h"
#include "pdf/filter/window_stream.h"

namespace {

constexpr int longest_code = 13;

// What frames the rows is found out here, the rows themselves are decoded in ccitt_row.cpp.
//
// A damaged row of T.4 data with end-of-line codes is replaced by the row above it, or by a white
// one where that was damaged too, and decoding goes on at the next such code (for K > 0 one before
// a row that needs no other). All other data ends at the first damage, since nothing tells where
// the next row begins.
class CCITTStream : public CPDFWindowStream {
 public:
  CCITTStream(std::unique_ptr<CPDFStream> input, const CPDFFilterSetup& setup,
              const CCITTParms& parms)
      : CPDFWindowStream(setup.report, (parms.columns + 7) / 8),
        bits_(std::move(input)),
        parms_(parms),
        row_bytes_((parms.columns + 7) / 8) {
    // A row takes a bit at least, but data that another filter has blown up may be any length.
    constexpr std::int64_t free_rows = std::int64_t{1} << 18, rows_of_a_byte = 1024;
    if (setup.file_bytes > 0) most_rows_ = free_rows + rows_of_a_byte * setup.file_bytes;
  }
  ~CCITTStream() override {
    KXFree(row_.changes);
    KXFree(above_.changes);
  }
  CCITTStream(const CCITTStream&) = delete;
  CCITTStream& operator=(const CCITTStream&) = delete;

  bool allocate() {
    const auto count = static_cast<std::size_t>(parms_.columns) + CCITTRow::slack;
    for (CCITTRow* row : {&row_, &above_}) {
      row->changes = static_cast<int*>(KXAlloc(count * sizeof(int)));
      if (row->changes == nullptr) return false;
      row->finish(parms_.columns);
    }
    return true;
  }

 private:
  enum class Next { row_1d, row_2d, damage, end };

  int produce(unsigned char* dst, int capacity) override {
    int made = 0;
    while (capacity - made >= row_bytes_ && next_row()) {
      // The new row is `above_` from here on.
      pdfbmp::paint_ccitt_row(above_, parms_.columns, parms_.black_is_1, dst + made);
      made += row_bytes_;
      ++rows_made_;
    }
    return made;
  }

  bool next_row() {
    if (finished_ || (parms_.rows > 0 && rows_made_ == parms_.rows)) return false;
    if (rows_made_ == most_rows_) {
      finished_ = true;
      note("the CCITT data has more rows than the limits allow");
      return false;
    }
    if (lost_rows_ > 0) {
      --lost_rows_;
      replace_row();
      return true;
    }
    const Next next = parms_.k < 0 ? frame_t6() : frame_t4();
    if (next == Next::end) return end();
    const bool good =
        next == Next::row_1d
            ? pdfbmp::decode_ccitt_1d(bits_, row_, parms_.columns)
            : next == Next::row_2d && pdfbmp::decode_ccitt_2d(bits_, above_, row_, parms_.columns);
    if (bits_.overrun() || (!good && bits_.short_of(longest_code))) return end();
    if (!good) return resynchronise();
    std::swap(row_, above_);
    above_is_damaged_ = false;
    return true;
  }

  /// T.6 has nothing between its rows but fill bits, and two end-of-line codes after the last one.
  Next frame_t6() {
    for (;;) {
      if (bits_.at_end()) return Next::end;
      if (parms_.byte_align && !at_end_of_block()) bits_.skip_to_byte();
      if (at_end_of_block()) {
        block_ended_ = parms_.end_of_block;
        if (block_ended_) return Next::end;
        bits_.skip(24);
      } else if (bits_.peek(12) == 1) {
        bits_.skip(12);  // One such code has no meaning here, but does no harm.
      } else {
        return Next::row_2d;
      }
    }
  }

  /// T.4 may have an end-of-line code before each row, with fill bits before it, and has two or
  /// more at its end. With K > 0 each code, or else each row, begins with a bit: 1 for a
  /// one-dimensional row.
  Next frame_t4() {
    int codes = std::exchange(codes_found_, 0);
    bool two_dimensional = false;
    for (;; ++codes) {
      // Where rows are aligned and no codes expected, fill bits and the zeros that begin a row
      // might be taken for a code; but not for the two codes that follow the last row at once.
      if (parms_.byte_align && !parms_.end_of_line && codes == 0 && !at_end_of_block()) {
        bits_.skip_to_byte();
      }
      if (!bits_.skip_end_of_line()) break;
      two_dimensional = read_tag();
    }
    block_ended_ = codes >= 2 && parms_.end_of_block;
    if (block_ended_ || bits_.at_end()) return Next::end;
    if (codes > 0) {
      if (rows_made_ == 0) parms_.end_of_line = true;
      ++rows_with_code_;
    } else {
      // A row that ended without its code ended in the wrong place.
      if (rows_with_code_ >= 2 && rows_with_code_ == rows_made_) {
        ++rows_with_code_;
        return Next::damage;
      }
      if (parms_.byte_align) bits_.skip_to_byte();
      two_dimensional = read_tag();
    }
    return two_dimensional ? Next::row_2d : Next::row_1d;
  }

  /// Whether two end-of-line codes come next, without fill bits.
  bool at_end_of_block() {
    bits_.need();
    return parms_.k > 0 ? bits_.peek(25) == 0x003001 : bits_.peek(24) == 0x001001;
  }

  /// The bit that says how the next row is coded; true for two dimensions.
  bool read_tag() {
    if (parms_.k == 0) return false;
    bits_.need();
    const bool one_dimensional = bits_.peek(1) != 0;
    bits_.skip(1);
    return !one_dimensional;
  }

  bool resynchronise() {
    if (parms_.k < 0 || (rows_with_code_ == 0 && !parms_.end_of_line)) {
      finished_ = true;
      note("the CCITT data is damaged");
      return false;
    }
    std::int64_t lost = 1;
    for (;; ++lost) {
      if (!bits_.find_end_of_line()) {
        finished_ = true;
        break;
      }
      if (!read_tag()) break;
    }
    damaged_rows_ += lost;
    if (finished_ || damaged_rows_ > parms_.tolerated) note("rows of the CCITT data are damaged");
    if (finished_) return false;
    codes_found_ = 1;
    rows_with_code_ += lost - 1;
    lost_rows_ = lost - 1;
    replace_row();
    return true;
  }

  void replace_row() {
    if (above_is_damaged_) {
      above_.count = 0;
      above_.finish(parms_.columns);
    }
    above_is_damaged_ = true;
  }

  bool end() {
    finished_ = true;
    // Without a height and an end marker the end of the data is as good as any.
    if (parms_.rows > 0 || (parms_.end_of_block && !block_ended_)) {
      stop("the CCITT data ends early");
    }
    return false;
  }

  CCITTBits bits_;
  CCITTParms parms_;
  int row_bytes_;
  CCITTRow row_;
  CCITTRow above_;
  std::int64_t rows_made_ = 0;
  std::int64_t most_rows_ = -1;      // Negative where the data's length in the file is not known.
  std::int64_t rows_with_code_ = 0;  // That had an end-of-line code before them.
  std::int64_t damaged_rows_ = 0;
  std::int64_t lost_rows_ = 0;  // Still to be replaced before decoding goes on.
  int codes_found_ = 0;         // 1 after resynchronising: the code that was searched for.
  bool above_is_damaged_ = false;
  bool block_ended_ = false;
  bool finished_ = false;
};

}  // namespace

namespace pdfbmp {

std::unique_ptr<CPDFStream> make_ccitt(std::unique_ptr<CPDFStream> input,
                                       const CPDFFilterSetup& setup) {
  const CCITTParms parms(setup);
  if (parms.columns < 1 || parms.columns > setup.limits.max_row_bytes) {
    setup.report->note("the width of the CCITT data is out of range");
    return nullptr;
  }
  std::unique_ptr<CCITTStream> stream(new (std::nothrow)
                                          CCITTStream(std::move(input), setup, parms));
  if (stream == nullptr || !stream->allocate()) {
    setup.report->note("no memory for the rows of the CCITT data");
    return nullptr;
  }
  return stream;
}

}  // namespace pdfbmp
