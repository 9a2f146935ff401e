// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/rows.h"

#include "gtest/gtest.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "tests/pdf/cs/grid_table.h"
#include "tests/support/guarded.h"

namespace {

std::vector<CPDFCpu> vector_paths() {
  std::vector<CPDFCpu> paths;
  for (const CPDFCpu cpu : {CPDFCpu::sse41, CPDFCpu::avx2, CPDFCpu::avx512}) {
    if (cpu_runs(cpu)) paths.push_back(cpu);
  }
  return paths;
}

constexpr size_t grid_entries = size_t{17} * 17 * 17 * 17 * 3;

/// The table for CMYK, with a page that faults right behind it, or right before it.
const unsigned short* grid(bool guard_behind) {
  constexpr size_t bytes = sizeof(short) * grid_entries;
  static const Guarded behind(bytes), before(bytes);
  static const std::vector<unsigned short> table = random_grid_table(1);
  unsigned char* at = guard_behind ? behind.last(bytes) : before.begin();
  std::memcpy(at, table.data(), bytes);
  return reinterpret_cast<const unsigned short*>(at);
}

/// 512 bytes that serve as a table of any entry size.
const std::array<_KXRGBA, 256>& entries() {
  static const auto table = [] {
    std::array<_KXRGBA, 256> all;
    std::mt19937 random(2);
    for (_KXRGBA& entry : all) {
      const auto word = static_cast<uint32_t>(random());
      std::memcpy(&entry, &word, 4);
    }
    return all;
  }();
  return table;
}

/// One row function, whatever its type.
struct Row {
  std::string name;
  size_t in, step, in_bits;  ///< Source bytes a pixel (or bits a sample), pixels a result.
  size_t out;                ///< Bytes a result.
  std::function<void(const CPDFRows&, unsigned char* dst, const unsigned char* src, size_t n)> call;

  size_t source_bytes(size_t n) const {
    if (n == 0) return 0;
    return in_bits ? (n * in_bits + 7) / 8 : ((n - 1) * step + 1) * in;
  }
};

_KXRGBA* pixels(unsigned char* dst) { return reinterpret_cast<_KXRGBA*>(dst); }

std::vector<Row> all_rows() {
  std::vector<Row> all;
  for (size_t s = 0; s < 3; ++s) {
    const size_t step = size_t{1} << s;
    const std::string suffix = "/" + std::to_string(step);
    const auto rgba = [&](const char* name, size_t in, CPDFRows::Rgba(CPDFRows::*row)[3]) {
      all.push_back(
          {name + suffix, in, step, 0, 4, [=](auto& rows, auto dst, auto src, size_t n) { (rows.*row)[s](pixels(dst), src, n); }});
    };
    rgba("rgba_from_gray", 1, &CPDFRows::rgba_from_gray);
    rgba("rgba_from_rgb", 3, &CPDFRows::rgba_from_rgb);
    rgba("rgba_from_cmyk", 4, &CPDFRows::rgba_from_cmyk);
    for (const bool guard_behind : {true, false}) {
      const unsigned short* table = grid(guard_behind);
      all.push_back(
          {(guard_behind ? "rgba_from_cmyk_grid" : "rgba_from_cmyk_grid_begin") + suffix, 4, step, 0, 4,
           [=](auto& rows, auto dst, auto src, size_t n) { rows.rgba_from_cmyk_grid[s](pixels(dst), src, n, table, grid_entries); }});
    }
    all.push_back({"rgba_from_8bit" + suffix, 1, step, 0, 4,
                   [=](auto& rows, auto dst, auto src, size_t n) { rows.rgba_from_8bit[s](pixels(dst), src, n, entries().data()); }});
  }
  const auto bytes = [&](const char* name, size_t in, size_t out, CPDFRows::Bytes CPDFRows::*row) {
    all.push_back({name, in, 1, 0, out, [=](auto& rows, auto dst, auto src, size_t n) { (rows.*row)(dst, src, n); }});
  };
  bytes("gray_from_gray", 1, 2, &CPDFRows::gray_from_gray);
  bytes("gray_from_rgb", 3, 2, &CPDFRows::gray_from_rgb);
  bytes("gray_from_cmyk", 4, 2, &CPDFRows::gray_from_cmyk);
  bytes("average4", 4, 1, &CPDFRows::average4);
  bytes("complement", 1, 1, &CPDFRows::complement);
  bytes("rgb_from_rgba", 4, 3, &CPDFRows::rgb_from_rgba);
  // The opacity stands behind the colours of the row.
  const auto with_alpha = [&](const char* name, size_t in, CPDFRows::BytesAlpha CPDFRows::*row) {
    all.push_back({name, in, 1, 0, in, [=](auto& rows, auto dst, auto src, size_t n) { (rows.*row)(dst, src, n, src + n * (in - 1)); }});
  };
  with_alpha("rgba_from_rgb_and_alpha", 4, &CPDFRows::rgba_from_rgb_and_alpha);
  with_alpha("gray_alpha_from_gray_and_alpha", 2, &CPDFRows::gray_alpha_from_gray_and_alpha);
  const auto table = [&](const char* name, size_t bits, size_t out, CPDFRows::BytesTable CPDFRows::*row) {
    all.push_back({name, 0, 1, bits, out, [=](auto& rows, auto dst, auto src, size_t n) { (rows.*row)(dst, src, n, &entries()[0].b); }});
  };
  table("gray_from_8bit", 8, 2, &CPDFRows::gray_from_8bit);
  table("bytes_from_8bit", 8, 1, &CPDFRows::bytes_from_8bit);
  table("gray_from_1bit", 1, 2, &CPDFRows::gray_from_1bit);
  table("bytes_from_1bit", 1, 1, &CPDFRows::bytes_from_1bit);
  all.push_back({"rgba_from_1bit", 0, 1, 1, 4,
                 [=](auto& rows, auto dst, auto src, size_t n) { rows.rgba_from_1bit(pixels(dst), src, n, entries().data()); }});
  return all;
}

/// Fills in one of four ways: all 0, all 255, values next to both ends in runs, anything.
void fill(unsigned char* bytes, size_t count, int way, std::mt19937& random) {
  constexpr unsigned char ends[] = {0, 1, 15, 16, 127, 128, 254, 255};
  for (size_t i = 0; i < count; ++i) {
    const auto draw = static_cast<unsigned>(random());
    bytes[i] = way == 0             ? 0
               : way == 1           ? 255
               : way == 3           ? static_cast<unsigned char>(draw)
               : draw & 8 && i >= 4 ? bytes[i - 4]
                                    : ends[draw & 7];
  }
}

/// Runs `row` twice over a destination of different old bytes and compares with `expected`; the
/// bytes round the results must stay.
testing::AssertionResult same(const Row& row, const CPDFRows& rows, unsigned char* dst, const unsigned char* src, size_t n,
                              const std::vector<unsigned char>& expected, size_t margin) {
  for (const int old : {0x5A, 0xA5}) {
    const size_t bytes = n * row.out;
    std::memset(dst - margin, old, bytes + margin);
    row.call(rows, dst, src, n);
    for (size_t i = 0; i < margin; ++i) {
      if (dst[-1 - static_cast<long>(i)] != old) return testing::AssertionFailure() << "before";
    }
    for (size_t i = 0; i < bytes; ++i) {
      if (dst[i] != expected[i]) {
        return testing::AssertionFailure() << "byte " << i << ": " << int{dst[i]} << ", expected " << int{expected[i]} << ", old " << old;
      }
    }
  }
  return testing::AssertionSuccess();
}

// Rows that end at a page begin at every alignment.
TEST(Rows, EveryPathEqualsScalarAtEveryLength) {
  constexpr size_t longest = 200, margin = 64;
  Guarded source(longest * 16), target(longest * 4 + margin);
  ASSERT_TRUE(source.begin() && target.begin());
  for (const CPDFCpu cpu : vector_paths()) {
    const CPDFRows rows = rows_of(cpu);
    std::mt19937 random(3);
    for (const Row& row : all_rows()) {
      for (size_t n = 0; n <= longest; ++n) {
        for (int way = 0; way < 4; ++way) {
          const size_t size = row.source_bytes(n);
          std::vector<unsigned char> expected(n * row.out);
          // Source and target end, then begin, where the next byte is a fault.
          unsigned char* src = source.last(size);
          fill(src, size, way, random);
          row.call(scalar_rows, expected.data(), src, n);
          ASSERT_TRUE(same(row, rows, target.last(n * row.out), src, n, expected, margin))
              << cpu_name(cpu) << ' ' << row.name << ' ' << n << ' ' << way;
          std::memmove(source.begin(), src, size);
          ASSERT_TRUE(same(row, rows, target.begin(), source.begin(), n, expected, 0))
              << cpu_name(cpu) << ' ' << row.name << ' ' << n << ' ' << way;
        }
      }
    }
  }
}

TEST(Rows, GrayOfEveryRgb) {
  std::vector<unsigned char> source(256 * 256 * 3), expected(256 * 256 * 2), result(256 * 256 * 2);
  for (int r = 0; r < 256; ++r) {
    for (int i = 0; i < 256 * 256; ++i) {
      const auto at = static_cast<size_t>(i) * 3;
      source[at] = static_cast<unsigned char>(r);
      source[at + 1] = static_cast<unsigned char>(i >> 8);
      source[at + 2] = static_cast<unsigned char>(i);
      const int luma = (306 * r + 601 * (i >> 8) + 117 * (i & 255)) >> 10;
      expected[static_cast<size_t>(i) * 2] = static_cast<unsigned char>(luma);
      expected[static_cast<size_t>(i) * 2 + 1] = 255;
    }
    rows().gray_from_rgb(result.data(), source.data(), 256 * 256);
    ASSERT_EQ(result, expected) << r;
  }
}

// All four inks at every 5th level and the levels round the ends of the table's cells, through the
// formula and the table.
TEST(Rows, CmykOnADenseGrid) {
  std::vector<unsigned char> levels;
  for (int v = 0; v < 256; ++v) {
    if (v % 15 == 0 || v < 2 || v > 253 || v == 16 || v == 128) { levels.push_back(static_cast<unsigned char>(v)); }
  }
  std::vector<unsigned char> source;
  for (const unsigned char m : levels) {
    for (const unsigned char y : levels) {
      for (const unsigned char k : levels) source.insert(source.end(), {0, m, y, k});
    }
  }
  const size_t n = source.size() / 4;
  std::vector<unsigned char> expected(n * 4), result(n * 4);
  for (const Row& row : all_rows()) {
    if (row.in != 4 || row.step != 1 || row.out == 1) continue;
    for (const unsigned char c : levels) {
      for (size_t i = 0; i < n; ++i) source[4 * i] = c;
      row.call(scalar_rows, expected.data(), source.data(), n);
      row.call(rows(), result.data(), source.data(), n);
      ASSERT_EQ(result, expected) << row.name << ' ' << int{c};
    }
  }
}

TEST(Rows, TableShorterThanTheGrid) {
  std::vector<unsigned char> source(64 * 4);
  std::mt19937 random(5);
  fill(source.data(), source.size(), 3, random);
  // Copies, so that a sanitizer sees what lies behind them.
  const std::vector<unsigned short> part(grid(true), grid(true) + 120000);
  std::vector<_KXRGBA> expected(64, {1, 2, 3, 4}), result = expected;
  scalar_rows.rgba_from_cmyk_grid[0](expected.data(), source.data(), 64, part.data(), part.size());
  rows().rgba_from_cmyk_grid[0](result.data(), source.data(), 64, part.data(), part.size());
  int untouched = 0;
  for (size_t i = 0; i < 64; ++i) {
    ASSERT_EQ(std::memcmp(&expected[i], &result[i], 4), 0) << i;
    untouched += result[i].a == 4;
  }
  EXPECT_GT(untouched, 5);
  EXPECT_LT(untouched, 60);
}

// The suite is run once for each path (tests/pdf/cs/CMakeLists.txt): the one that is named must be
// the one that runs.
TEST(Rows, ForcedPathIsTheRunningOne) {
  const char* forced = std::getenv("PDFBMP_CPU");
  if (!forced) {
    const auto paths = vector_paths();
    EXPECT_EQ(rows().cpu, paths.empty() ? CPDFCpu::scalar : paths.back());
    return;
  }
  for (const CPDFCpu cpu : {CPDFCpu::scalar, CPDFCpu::sse41, CPDFCpu::avx2, CPDFCpu::avx512}) {
    if (std::string(forced) != cpu_name(cpu)) continue;
    if (!cpu_runs(cpu)) GTEST_SKIP() << "this CPU has no " << forced;
    EXPECT_EQ(rows().cpu, cpu);
    EXPECT_EQ(rows().gray_from_rgb, rows_of(cpu).gray_from_rgb);
    return;
  }
  FAIL() << "no such path: " << forced;
}

}  // namespace
