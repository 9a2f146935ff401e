// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp-jbig2/budget.h"

#include <algorithm>

namespace {

// A scan of text takes a byte for a hundred pixels or so.
constexpr std::uint64_t pixels_per_byte = std::uint64_t{1} << 13;
// Symbols, their instances, patterns and cells of halftones: a handful of bits each in honest data.
constexpr std::uint64_t items_per_byte = 64;
// That a page may have, or draw over itself, for nothing.
constexpr std::uint64_t blank_pixels = std::uint64_t{1} << 28;
constexpr std::uint64_t free_items = std::uint64_t{1} << 12, free_cells = std::uint64_t{1} << 22;

// Numbers of a segment's data; 0 beyond its end.
class Fields {
 public:
  explicit Fields(const Jbig2Segment& segment) : data_(segment.data), size_(segment.data_bytes) {}

  std::uint64_t number(std::size_t at, std::size_t count) const {
    std::uint64_t value = 0;
    for (std::size_t i = at; i < at + count; ++i) value = value << 8 | (i < size_ ? data_[i] : 0U);
    return value;
  }

 private:
  const unsigned char* data_;
  std::size_t size_;
};

// What follows the place and size of a region (T.88, 7.4.1).
constexpr std::size_t region_header = 17;

// T.88, 7.4.3.1.
std::uint64_t text_instances(const Fields& fields) {
  const std::uint64_t flags = fields.number(region_header, 2);
  const bool huffman = (flags & 1) != 0, refined = (flags & 2) != 0,
             one_template = flags >> 15 != 0;
  return fields.number(
      region_header + 2 + (huffman ? 2U : 0U) + (refined && !one_template ? 4U : 0U), 4);
}

// T.88, 7.4.2.1: symbols that are exported, and new ones.
std::uint64_t dictionary_symbols(const Fields& fields) {
  const std::uint64_t flags = fields.number(0, 2);
  const bool huffman = (flags & 1) != 0, refined = (flags & 2) != 0;
  const bool first_template = (flags >> 10 & 3) == 0, refines_by_first = (flags >> 12 & 1) == 0;
  const std::size_t at = 2 +
                         (huffman          ? 0U
                          : first_template ? 8U
                                           : 2U) +
                         (refined && refines_by_first ? 4U : 0U);
  return fields.number(at, 4) + fields.number(at + 4, 4);
}

std::uint64_t area(const Fields& fields, std::size_t at) {
  const std::uint64_t width = fields.number(at, 4), height = fields.number(at + 4, 4);
  return width * height;  // Of two numbers below 2^32.
}

}  // namespace

const char* Jbig2Budget::refuses_page(const Jbig2Segment& segment) {
  constexpr std::uint64_t unknown_height = 0xFFFFFFFF;
  const Fields fields(segment);
  // A height that is not known yet begins as that of a stripe, and grows within the memory limit.
  page_pixels_ = fields.number(4, 4) == unknown_height ? fields.number(0, 4) : area(fields, 0);
  return segment.data_bytes >= 8 && page_pixels_ <= request_.max_pixels
             ? nullptr
             : "the JBIG2 page is larger than the limits allow";
}

bool Jbig2Budget::is_bounded_dictionary(const Jbig2Segment& segment) {
  const Fields fields(segment);
  if (segment.is_symbol_dictionary()) {
    return dictionary_symbols(fields) <= amount(free_items, items_per_byte);
  }
  // All patterns lie side by side in one bitmap. The bound is far beyond any dictionary in use, and
  // decoded in a second.
  constexpr std::uint64_t most = std::uint64_t{1} << 26;
  const std::uint64_t patterns = fields.number(3, 4) + 1;
  pattern_pixels_ = std::max(pattern_pixels_, fields.number(1, 1) * fields.number(2, 1));
  return patterns <= amount(free_items, items_per_byte) &&
         patterns * fields.number(1, 1) * fields.number(2, 1) <=
             std::min(most, request_.max_pixels);
}

bool Jbig2Budget::is_bounded_region(const Jbig2Segment& segment) {
  const Fields fields(segment);
  std::uint64_t pixels = area(fields, 0);
  if (segment.is_text_region()) {
    if (text_instances(fields) > amount(free_items, items_per_byte)) return false;
  } else if (segment.is_halftone_region()) {
    const std::uint64_t cells = area(fields, region_header + 1);
    if (cells > amount(free_cells, items_per_byte)) return false;
    // Cells may lie over one another; a pattern is drawn by the byte.
    pixels = std::max(pixels, cells * pattern_pixels_ / 8);
  } else if (segment.is_generic_region() && (fields.number(region_header, 1) & 1) != 0) {
    pixels /= 16;  // Blank rows of T.6 are a bit each, and filled at once.
  }
  // A page full of regions is free, and some for those that lie over one another.
  const std::uint64_t most =
      amount(page_pixels_ + std::min(blank_pixels, request_.max_pixels), pixels_per_byte);
  if (pixels > most - std::min(most, region_pixels_)) return false;
  region_pixels_ += pixels;
  return true;
}

const char* Jbig2Budget::refuses(const Jbig2Segment& segment) {
  if (segment.is_page()) return refuses_page(segment);
  if (segment.is_symbol_dictionary() || segment.is_pattern_dictionary()) {
    return is_bounded_dictionary(segment) ? nullptr
                                          : "a JBIG2 dictionary is larger than the limits allow";
  }
  return !segment.is_region() || is_bounded_region(segment)
             ? nullptr
             : "the JBIG2 data asks for more regions than the limits allow";
}

Jbig2Allowance Jbig2Allowance::of(const Jbig2Request& request, const unsigned char* bytes,
                                  std::size_t size) {
  // Beyond what a small file may declare, pixels need data.
  constexpr std::uint64_t free_pixels = std::uint64_t{1} << 23;
  const std::uint64_t data = pixels_per_byte * std::uint64_t{size};
  std::uint64_t pixels = 0;
  for (std::size_t at = 0; at < size;) {
    const Jbig2Segment segment = read_segment(bytes + at, size - at);
    if (segment.is_page()) {
      pixels = area(Fields(segment), 0);  // Of no known height: as many as may be.
      break;
    }
    at += segment.bytes;
  }
  pixels = std::min(pixels, request.max_pixels);

  // The page, a region of its size and what is made on the way; and small things without number.
  constexpr std::uint64_t free_bytes = std::uint64_t{96} << 20, bytes_per_byte = 128;
  Jbig2Allowance allowance;
  allowance.seconds = request.seconds_for(std::min(pixels, free_pixels + data));
  const std::uint64_t page_bytes = std::min(pixels, blank_pixels + data) / 8;
  allowance.bytes = std::min(request.max_bytes,
                             free_bytes + 4 * page_bytes + bytes_per_byte * std::uint64_t{size});
  return allowance;
}
