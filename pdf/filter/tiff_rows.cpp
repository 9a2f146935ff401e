// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/tiff_rows.h"

#include <cstdint>

#include "pdf/filter/png_rows.h"

namespace {

void undo_words(unsigned char* row, int n, int colors) {
  const int step = 2 * colors;
  for (int i = step; i + 1 < n; i += 2) {
    const int before = row[i - step] << 8 | row[i - step + 1];
    const int sum = (row[i] << 8 | row[i + 1]) + before;
    row[i] = static_cast<unsigned char>(sum >> 8);
    row[i + 1] = static_cast<unsigned char>(sum);
  }
}

// One colour of one bit: each bit is the exclusive or of all up to it.
void undo_bits(unsigned char* row, int n) {
  unsigned carry = 0;
  for (int i = 0; i < n; ++i) {
    unsigned v = row[i];
    v ^= v >> 1;
    v ^= v >> 2;
    v ^= v >> 4;
    v ^= carry;
    row[i] = static_cast<unsigned char>(v);
    carry = (v & 1) != 0 ? 255 : 0;
  }
}

// Samples within bytes, one at a time.
void undo_parts(unsigned char* row, int n, int colors, int bits) {
  const int per_byte = 8 / bits;
  const unsigned mask = (1U << bits) - 1;
  const std::int64_t samples = std::int64_t{n} * per_byte;
  for (std::int64_t i = colors; i < samples; ++i) {
    const std::int64_t from = i - colors;
    const auto shift_of = [&](std::int64_t s) {
      return static_cast<unsigned>(8 - bits * static_cast<int>(s % per_byte + 1));
    };
    const unsigned before = unsigned{row[from / per_byte]} >> shift_of(from);
    const unsigned shift = shift_of(i);
    unsigned char& place = row[i / per_byte];
    const unsigned sum = ((unsigned{place} >> shift) + before) & mask;
    place = static_cast<unsigned char>((place & ~(mask << shift)) | sum << shift);
  }
}

}  // namespace

namespace pdfbmp {

void undo_tiff_row(unsigned char* row, int n, int colors, int bits) {
  if (bits == 16) return undo_words(row, n, colors);
  if (bits == 8) return undo_png_row(1, row, row, n, colors);  // PNG's Sub is the same sum.
  if (bits == 1 && colors == 1) return undo_bits(row, n);
  undo_parts(row, n, colors, bits);
}

}  // namespace pdfbmp
