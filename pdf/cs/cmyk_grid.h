// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "kx/rgba.h"

// The lookup table of pdf/cs/device_cmyk_ext.h, one colour at a time.

namespace cmyk_grid {

// Entries from one node to the next along each axis: 17^3 * 3, 17^2 * 3, 17 * 3, 3.
inline constexpr int cyan = 14739, magenta = 867, yellow = 51, black = 3;
inline constexpr int entries = 17 * cyan;

/// How far above a base node the furthest node is that a step of non-zero fraction leads to.
inline int reach(const int frac[4]) {
  return (frac[0] ? cyan : 0) + (frac[1] ? magenta : 0) + (frac[2] ? yellow : 0) +
         (frac[3] ? black : 0);
}

/// Red, green and blue in the magenta-yellow-black cube above `node`, on the table's scale.
inline void tetrahedron(const unsigned short* node, const int frac[4], int out[3]) {
  const int fm = frac[1], fy = frac[2], fk = frac[3];
  // The three axes, by falling fraction. Equal fractions give the same colour in either order.
  struct Step {
    int offset, fraction;
  };
  Step steps[3] = {{magenta, fm}, {yellow, fy}, {black, fk}};
  const auto order = [&steps](int a, int b) {
    if (steps[a].fraction < steps[b].fraction) {
      const Step lesser = steps[a];
      steps[a] = steps[b];
      steps[b] = lesser;
    }
  };
  order(0, 1);
  order(1, 2);
  order(0, 1);

  int sum[3] = {0, 0, 0};
  const unsigned short* at = node;
  for (const Step& step : steps) {
    if (step.fraction == 0) break;  // all that follow are 0 too, and may lie past the grid
    const unsigned short* next = at + step.offset;
    for (int ch = 0; ch < 3; ++ch) sum[ch] += step.fraction * (next[ch] - at[ch]);
    at = next;
  }
  for (int ch = 0; ch < 3; ++ch) out[ch] = node[ch] + (sum[ch] >> 12);
}

/// Stores the colour of (c, m, y, k), or leaves `rgba` untouched where one of its nodes is not
/// among the `size` entries of the table.
inline void to_rgba(const unsigned short* table, size_t size, int c, int m, int y, int k,
                    _KXRGBA& rgba) {
  // A component lies at (v + 1) / 16 nodes. 64 bits: a colour need not be in range.
  const int64_t at[4] = {int64_t{c} + 1, int64_t{m} + 1, int64_t{y} + 1, int64_t{k} + 1};
  int frac[4];
  for (int i = 0; i < 4; ++i) frac[i] = static_cast<int>(at[i] & 15) << 8;
  const int64_t base =
      (at[0] >> 4) * cyan + (at[1] >> 4) * magenta + (at[2] >> 4) * yellow + (at[3] >> 4) * black;
  if (base < 0 || base + reach(frac) + 3 > static_cast<int64_t>(size)) return;

  int rgb[3];
  tetrahedron(table + base, frac, rgb);
  if (frac[0] != 0) {
    int above[3];
    tetrahedron(table + base + cyan, frac, above);
    for (int ch = 0; ch < 3; ++ch) rgb[ch] += ((above[ch] - rgb[ch]) * frac[0]) >> 12;
  }
  rgba.r = static_cast<unsigned char>(rgb[0] >> 8);
  rgba.g = static_cast<unsigned char>(rgb[1] >> 8);
  rgba.b = static_cast<unsigned char>(rgb[2] >> 8);
  rgba.a = 255;
}

}  // namespace cmyk_grid
