// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "pdf/cs/rows.h"

/// One row function, whatever its type.
struct RowFunction {
  std::string name;
  size_t in, step, in_bits;  ///< Source bytes a pixel (or bits a sample), pixels a result.
  size_t out;                ///< Bytes a result.
  std::function<void(const CPDFRows&, unsigned char* dst, const unsigned char* src, size_t n)> call;

  size_t source_bytes(size_t n) const {
    if (n == 0) return 0;
    return in_bits ? (n * in_bits + 7) / 8 : ((n - 1) * step + 1) * in;
  }
};

/// The tables that they look into: 256 entries, and nodes of a CMYK table.
struct RowTables {
  const _KXRGBA* entries;
  const unsigned short* grid;
  size_t grid_entries;
};

/// Every row function. Where one takes opacity, that stands behind the colours of the row.
inline std::vector<RowFunction> row_functions(const RowTables& tables) {
  std::vector<RowFunction> all;
  const auto add = [&all](std::string name, size_t in, size_t step, size_t in_bits, size_t out, auto call) {
    all.push_back({std::move(name), in, step, in_bits, out, [call](auto& rows, auto dst, auto src, size_t n) { call(rows, dst, src, n); }});
  };
  const auto pixels = [](unsigned char* dst) { return reinterpret_cast<_KXRGBA*>(dst); };
  for (size_t s = 0; s < 3; ++s) {
    const auto rgba = [&](const char* name, size_t in, auto row, auto... more) {
      add(name + std::string("/") + std::to_string(1 << s), in, size_t{1} << s, 0, 4,
          [=](auto& rows, auto dst, auto src, size_t n) { (rows.*row)[s](pixels(dst), src, n, more...); });
    };
    rgba("rgba_from_gray", 1, &CPDFRows::rgba_from_gray);
    rgba("rgba_from_rgb", 3, &CPDFRows::rgba_from_rgb);
    rgba("rgba_from_cmyk", 4, &CPDFRows::rgba_from_cmyk);
    rgba("rgba_from_cmyk_grid", 4, &CPDFRows::rgba_from_cmyk_grid, tables.grid, tables.grid_entries);
    rgba("rgba_from_8bit", 1, &CPDFRows::rgba_from_8bit, tables.entries);
  }
  const auto bytes = [&](const char* name, size_t in, size_t in_bits, size_t out, auto row, auto... more) {
    add(name, in, 1, in_bits, out, [=](auto& rows, auto dst, auto src, size_t n) { (rows.*row)(dst, src, n, more...); });
  };
  bytes("gray_from_gray", 1, 0, 2, &CPDFRows::gray_from_gray);
  bytes("gray_from_rgb", 3, 0, 2, &CPDFRows::gray_from_rgb);
  bytes("gray_from_cmyk", 4, 0, 2, &CPDFRows::gray_from_cmyk);
  bytes("average4", 4, 0, 1, &CPDFRows::average4);
  bytes("complement", 1, 0, 1, &CPDFRows::complement);
  bytes("rgb_from_rgba", 4, 0, 3, &CPDFRows::rgb_from_rgba);
  const auto* entries = reinterpret_cast<const unsigned char*>(tables.entries);
  bytes("gray_from_8bit", 0, 8, 2, &CPDFRows::gray_from_8bit, entries);
  bytes("bytes_from_8bit", 0, 8, 1, &CPDFRows::bytes_from_8bit, entries);
  bytes("gray_from_1bit", 0, 1, 2, &CPDFRows::gray_from_1bit, entries);
  bytes("bytes_from_1bit", 0, 1, 1, &CPDFRows::bytes_from_1bit, entries);
  add("rgba_from_1bit", 0, 1, 1, 4,
      [=](auto& rows, auto dst, auto src, size_t n) { rows.rgba_from_1bit(pixels(dst), src, n, tables.entries); });
  const auto with_alpha = [&](const char* name, size_t in, auto row) {
    add(name, in, 1, 0, in, [=](auto& rows, auto dst, auto src, size_t n) { (rows.*row)(dst, src, n, src + n * (in - 1)); });
  };
  with_alpha("rgba_from_rgb_and_alpha", 4, &CPDFRows::rgba_from_rgb_and_alpha);
  with_alpha("gray_alpha_from_gray_and_alpha", 2, &CPDFRows::gray_alpha_from_gray_and_alpha);
  return all;
}
