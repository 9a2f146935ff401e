// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "pdf/image/row_walk.h"

namespace image_decoding {

/// Bytes of a packed row.
constexpr std::int64_t packed_bytes(int width, std::int64_t bits_per_pixel) {
  return (width * bits_per_pixel + 7) >> 3;
}

/// Looks up samples 0, Step, 2 * Step, ... of a row of `width` samples of `Bits` bits, most
/// significant first, and writes one pixel for each. Samples that are dropped are not unpacked.
template <int Bits, int Step, class Pixel>
void unpack_row(Pixel* out, const unsigned char* row, int width, const Pixel* table) {
  constexpr int group_bits = Bits * Step;  // From one kept sample to the next.
  constexpr unsigned mask = (1U << Bits) - 1;
  const int count = kept_of<Step>(width);
  if constexpr (group_bits >= 8) {
    constexpr int group_bytes = group_bits / 8;
    for (int i = 0; i < count; ++i)
      out[i] = table[row[std::ptrdiff_t{i} * group_bytes] >> (8 - Bits)];
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

}  // namespace image_decoding
