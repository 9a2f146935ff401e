// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <random>
#include <vector>

// Lookup tables for CMYK (pdf/cs/device_cmyk_ext.h) made up for tests.

inline size_t grid_entry(int c, int m, int y, int k) { return static_cast<size_t>((((c * 17 + m) * 17 + y) * 17 + k) * 3); }

/// A complete table; `color(c, m, y, k)` gives the three entries of a node.
template <class Color>
std::vector<unsigned short> grid_table(Color color) {
  std::vector<unsigned short> table;
  table.reserve(17 * 17 * 17 * 17 * 3);
  for (int node = 0; node < 17 * 17 * 17 * 17; ++node) {
    const std::array<int, 3> rgb = color(node / (17 * 17 * 17), node / (17 * 17) % 17, node / 17 % 17, node % 17);
    for (const int entry : rgb) table.push_back(static_cast<unsigned short>(entry));
  }
  return table;
}

/// Entries anywhere in 0..65535, among them many of both ends.
inline std::vector<unsigned short> random_grid_table(unsigned seed) {
  std::mt19937 random(seed);
  return grid_table([&random](int, int, int, int) {
    std::array<int, 3> rgb;
    for (int& entry : rgb) {
      const auto draw = static_cast<uint32_t>(random());
      entry = draw >> 30 ? static_cast<int>(draw & 0xFFFF) : draw & 1 ? 0xFFFF : 0;
    }
    return rgb;
  });
}
