// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "pdf/filter/jbig2_segments.h"
#include "tools/pdfbmp-jbig2/protocol.h"

/// Weighs what segments declare against the data that there is, before they are decoded: the
/// decoder takes memory and time by what is declared.
class Jbig2Budget {
 public:
  /// Of a page that takes `bytes`, its globals among them.
  Jbig2Budget(const Jbig2Request& request, std::size_t bytes) : request_(request), bytes_(bytes) {}

  /// Why the segment must not be decoded, in words; null where it may be.
  const char* refuses(const Jbig2Segment& segment);

 private:
  /// An amount that some data may ask for: so much free of charge, and so much for each byte.
  std::uint64_t amount(std::uint64_t free, std::uint64_t per_byte) const {
    return free + per_byte * bytes_;
  }
  const char* refuses_page(const Jbig2Segment& segment);
  bool is_bounded_dictionary(const Jbig2Segment& segment);
  bool is_bounded_region(const Jbig2Segment& segment);

  Jbig2Request request_;
  std::uint64_t bytes_;
  std::uint64_t page_pixels_ = 0;
  std::uint64_t region_pixels_ = 0;   ///< Of all regions so far.
  std::uint64_t pattern_pixels_ = 1;  ///< Of the largest pattern so far.
};

/// What the decoding of a page may take.
struct Jbig2Allowance {
  std::uint64_t seconds = 0;  ///< Of the processor.
  std::uint64_t bytes = 0;    ///< Of memory at a time, the data aside.

  /// For `size` bytes, the page's and its globals'.
  static Jbig2Allowance of(const Jbig2Request& request, const unsigned char* bytes,
                           std::size_t size);
};
