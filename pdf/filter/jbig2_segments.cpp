// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/jbig2_segments.h"

namespace {

// Where the data of a generic region of unknown length ends (T.88, 7.2.7): a marker that cannot
// stand in coded data, and the number of rows. All of it where there is no marker.
std::size_t find_end(const unsigned char* data, std::size_t size) {
  if (size < 18) return size;
  const bool is_mmr = (data[17] & 1) != 0;
  const bool first_template = (data[17] & 6) == 0;
  const unsigned char first = is_mmr ? 0x00 : 0xFF, second = is_mmr ? 0x00 : 0xAC;
  for (std::size_t at = 18 + (is_mmr ? 0U : first_template ? 8U : 2U); at + 6 <= size; ++at) {
    if (data[at] == first && data[at + 1] == second) return at + 6;
  }
  return size;
}

}  // namespace

Jbig2Segment read_segment(const unsigned char* bytes, std::size_t size) {
  Jbig2Segment segment;
  segment.bytes = size;
  const auto number = [&](std::size_t at, std::size_t count) {
    std::uint64_t value = 0;
    for (std::size_t i = at; i < at + count; ++i) value = value << 8 | (i < size ? bytes[i] : 0U);
    return value;
  };
  if (size < 11) return segment;
  const std::uint64_t own = number(0, 4);
  const unsigned flags = bytes[4];
  std::uint64_t references = bytes[5] >> 5;
  std::size_t at = 6;
  if (references == 7) {  // The long form: a count, and a bit for each reference and one more.
    references = number(5, 4) & 0x1FFFFFFF;
    at = 9 + static_cast<std::size_t>(references / 8) + 1;
  }
  at += static_cast<std::size_t>(references) * (own <= 256 ? 1U : own <= 65536 ? 2U : 4U);
  const std::size_t page_bytes = (flags & 0x40) != 0 ? 4 : 1;
  segment.number = static_cast<std::uint32_t>(own);
  segment.page = static_cast<std::uint32_t>(number(at, page_bytes));
  at += page_bytes;
  const std::uint64_t length = number(at, 4);
  at += 4;
  if (at > size) return segment;
  segment.type = static_cast<int>(flags & 0x3F);
  segment.data = bytes + at;
  segment.data_bytes = size - at;
  if (length == 0xFFFFFFFF) {
    segment.whole = true;
    segment.data_bytes = find_end(segment.data, segment.data_bytes);
  } else {
    segment.whole = length <= segment.data_bytes;
    if (segment.whole) segment.data_bytes = static_cast<std::size_t>(length);
  }
  segment.bytes = at + segment.data_bytes;
  return segment;
}
