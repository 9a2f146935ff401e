// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "kx/alloc.h"

/// Hands out rows that come whole in reads of any size. A row may be delivered shorter or longer
/// than it was decoded: what is beyond its end reads as one byte, 0 by default, and takes no
/// memory.
class CPDFRowBytes {
 public:
  CPDFRowBytes() = default;
  ~CPDFRowBytes() { KXFree(row_); }
  CPDFRowBytes(const CPDFRowBytes&) = delete;
  CPDFRowBytes& operator=(const CPDFRowBytes&) = delete;

  /// Rows of `decoded` bytes, of which `delivered` are given; false where memory failed.
  bool set_size(std::int64_t decoded, std::int64_t delivered, unsigned char beyond = 0) {
    KXFree(row_);
    row_ = static_cast<unsigned char*>(KXCalloc(static_cast<std::size_t>(decoded), 1));
    decoded_ = std::min(decoded, delivered);
    at_ = delivered_ = delivered;
    beyond_ = beyond;
    return row_ != nullptr;
  }

  /// Fills up to `n` bytes of `dst`. `next_row` decodes a row into the buffer that it is given, or
  /// returns false where there is none. Returns less than `n` only then.
  template <class NextRow>
  int read(unsigned char* dst, int n, NextRow&& next_row) {
    int done = 0;
    while (done < n) {
      if (at_ == delivered_) {
        if (row_ == nullptr || delivered_ < 1 || !next_row(row_)) break;
        at_ = 0;
      }
      const bool inside = at_ < decoded_;
      const std::int64_t left = (inside ? decoded_ : delivered_) - at_;
      const auto k = static_cast<std::size_t>(std::min<std::int64_t>(left, n - done));
      if (inside) {
        std::memcpy(dst + done, row_ + at_, k);
      } else {
        std::memset(dst + done, beyond_, k);
      }
      at_ += static_cast<std::int64_t>(k);
      done += static_cast<int>(k);
    }
    return done;
  }

 private:
  unsigned char* row_ = nullptr;
  std::int64_t decoded_ = 0, delivered_ = 0;
  unsigned char beyond_ = 0;
  std::int64_t at_ = 0;  ///< Bytes of the current row that were delivered.
};
