// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp-jbig2/segments.h"

bool Jbig2Segment::is_drawn_region() const {
  switch (type) {
    case 6:  // Text, generic, refined and halftone regions, those drawn at once, with loss or not.
    case 7:
    case 22:
    case 23:
    case 38:
    case 39:
    case 42:
    case 43:
      return true;
    default:
      return false;
  }
}

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
  at += (flags & 0x40) != 0 ? 4 : 1;  // The page.
  const std::uint64_t length = number(at, 4);
  at += 4;
  if (at > size) return segment;
  segment.type = static_cast<int>(flags & 0x3F);
  segment.data = bytes + at;
  segment.data_bytes = size - at;
  // A length that is not known goes to the end, where the decoder finds it.
  segment.whole = length == 0xFFFFFFFF || length <= size - at;
  if (length < segment.data_bytes) segment.data_bytes = static_cast<std::size_t>(length);
  segment.bytes = at + segment.data_bytes;
  return segment;
}
