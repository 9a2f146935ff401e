// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <type_traits>

#include "kx/rgba.h"
#include "pdf/cs/rows.h"
#include "pdf/image/row_walk.h"

namespace image_decoding {

/// Bytes of a packed row.
constexpr std::int64_t packed_bytes(int width, std::int64_t bits_per_pixel) {
  return (width * bits_per_pixel + 7) >> 3;
}

/// Looks up samples 0, Step, 2 * Step, ... of a row of `width` samples of `Bits` bits, most
/// significant first, and writes one pixel for each. Samples that are dropped are not unpacked.
template <int Bits, int Step, class Pixel>
void look_up_samples(Pixel* out, const unsigned char* row, int width, const Pixel* table) {
  constexpr int group_bits = Bits * Step;  // From one kept sample to the next.
  constexpr unsigned mask = (1U << Bits) - 1;
  const int count = kept_of<Step>(width);
  if constexpr (group_bits >= 8) {
    constexpr int group_bytes = group_bits / 8;
    for (int i = 0; i < count; ++i) {
      out[i] = table[row[std::ptrdiff_t{i} * group_bytes] >> (8 - Bits)];
    }
  } else {
    constexpr int per_byte = 8 / group_bits;
    const auto sample = [&](unsigned byte, int i) {
      return table[(byte >> (8 - Bits - i * group_bits)) & mask];
    };
    int done = 0;
    for (; done + per_byte <= count; done += per_byte) {
      const unsigned byte = *row++;
      for (int i = 0; i < per_byte; ++i) out[done + i] = sample(byte, i);
    }
    for (int i = 0; done + i < count; ++i) out[done + i] = sample(*row, i);
  }
}

/// As look_up_samples, through the row conversions of pdf/cs/rows.h where they have the layout.
/// A gray pixel there is two bytes, an opacity one.
template <int Bits, int Step, class Pixel>
void unpack_row(Pixel* out, const unsigned char* row, int width, const Pixel* table) {
  constexpr bool is_color = std::is_same_v<Pixel, _KXRGBA>;
  const auto count = static_cast<std::size_t>(kept_of<Step>(width));
  if constexpr (is_color && Bits == 8) {
    rows().rgba_from_8bit[Step / 2](out, row, count, table);
  } else if constexpr (is_color && Bits == 1 && Step == 1) {
    rows().rgba_from_1bit(out, row, count, table);
  } else if constexpr (!is_color && (Bits == 1 || Bits == 8) && Step == 1) {
    const CPDFRows::BytesTable look_up =
        sizeof(Pixel) == 2 ? (Bits == 1 ? rows().gray_from_1bit : rows().gray_from_8bit)
                           : (Bits == 1 ? rows().bytes_from_1bit : rows().bytes_from_8bit);
    look_up(reinterpret_cast<unsigned char*>(out), row, count,
            reinterpret_cast<const unsigned char*>(table));
  } else {
    look_up_samples<Bits, Step>(out, row, width, table);
  }
}

}  // namespace image_decoding
