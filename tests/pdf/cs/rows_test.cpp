// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/rows.h"

#include "gtest/gtest.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "tests/pdf/cs/grid_table.h"
#include "tests/support/guarded.h"
#include "tests/support/row_functions.h"

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

/// With a CMYK table that ends, and one that begins, where the next byte is a fault.
std::vector<RowFunction> all_rows() {
  static const auto entries = [] {
    std::array<_KXRGBA, 256> all;
    std::mt19937 random(2);
    for (_KXRGBA& entry : all) {
      const auto word = static_cast<uint32_t>(random());
      std::memcpy(&entry, &word, 4);
    }
    return all;
  }();
  std::vector<RowFunction> all = row_functions({entries.data(), grid(true), grid_entries});
  for (RowFunction& row : row_functions({entries.data(), grid(false), grid_entries})) {
    if (row.name.find("grid") != std::string::npos) all.push_back(std::move(row));
  }
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
testing::AssertionResult same(const RowFunction& row, const CPDFRows& rows, unsigned char* dst, const unsigned char* src, size_t n,
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
    for (const RowFunction& row : all_rows()) {
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
  for (const RowFunction& row : all_rows()) {
    if (row.in != 4 || row.step != 1 || row.out == 1) continue;
    for (const unsigned char c : levels) {
      for (size_t i = 0; i < n; ++i) source[4 * i] = c;
      row.call(scalar_rows, expected.data(), source.data(), n);
      row.call(rows(), result.data(), source.data(), n);
      ASSERT_EQ(result, expected) << row.name << ' ' << int{c};
    }
  }
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
