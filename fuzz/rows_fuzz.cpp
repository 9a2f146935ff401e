// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// A row function of every path that this CPU runs, against its scalar twin. Source and
// destination are of exactly the size that the contract of pdf/cs/rows.h gives them.
//
// Input: a count, which function, then the source: 256 table entries of four bytes each, and the row.
#include <cstring>
#include <memory>
#include <vector>

#include "fuzz/target.h"
#include "pdf/cs/rows.h"

namespace {

constexpr int functions = 28;
constexpr std::size_t table_bytes = 1024, grid_entries = std::size_t{17} * 17 * 17 * 17 * 3;

struct Source {
  std::vector<std::uint8_t> bytes;
  std::vector<_KXRGBA> table;
  int skipped = 0;  ///< Functions before the one to be tried.
  const std::vector<unsigned short>* grid;
};

/// Tables that reach less far than colours may, and the whole one: some pixels are not served.
const std::vector<std::vector<unsigned short>>& grids() {
  static const auto all = [] {
    std::vector<std::vector<unsigned short>> made;
    for (std::size_t part = 0; part <= 16; ++part) {
      std::vector<unsigned short>& grid = made.emplace_back(part * grid_entries / 16);
      for (std::size_t i = 0; i < grid.size(); ++i) grid[i] = static_cast<unsigned short>(i * 40503U >> 3);
    }
    return made;
  }();
  return all;
}

// `call(rows, dst, src)` writes `out` bytes and reads `in`.
template <class Call>
void compare(const CPDFRows& path, Source& source, std::size_t out, std::size_t in, Call call) {
  if (source.skipped-- != 0) return;
  const auto row = std::make_unique<std::uint8_t[]>(in);
  for (std::size_t i = 0; i < in; ++i) row[i] = source.bytes.empty() ? std::uint8_t{0} : source.bytes[i % source.bytes.size()];
  const auto want = std::make_unique<std::uint8_t[]>(out), got = std::make_unique<std::uint8_t[]>(out);
  std::memset(want.get(), 7, out);  // What a pixel keeps that the grid cannot serve.
  std::memset(got.get(), 7, out);
  call(scalar_rows, want.get(), row.get());
  call(path, got.get(), row.get());
  require(std::memcmp(want.get(), got.get(), out) == 0);
}

void compare_all(const CPDFRows& path, Source source, std::size_t n) {
  using Rows = const CPDFRows&;
  using Bytes = std::uint8_t*;
  const auto pixels = [](Bytes dst) { return reinterpret_cast<_KXRGBA*>(dst); };
  const auto* entries = reinterpret_cast<const std::uint8_t*>(source.table.data());
  for (std::size_t s = 0; s < 3; ++s) {
    const std::size_t read = n == 0 ? 0 : ((n - 1) << s) + 1;
    const auto rgba = [&](auto member, std::size_t in, auto... more) {
      compare(path, source, 4 * n, in * read, [&](Rows rows, Bytes dst, Bytes src) { (rows.*member)[s](pixels(dst), src, n, more...); });
    };
    rgba(&CPDFRows::rgba_from_gray, 1);
    rgba(&CPDFRows::rgba_from_rgb, 3);
    rgba(&CPDFRows::rgba_from_cmyk, 4);
    rgba(&CPDFRows::rgba_from_cmyk_grid, 4, source.grid->data(), source.grid->size());
    rgba(&CPDFRows::rgba_from_8bit, 1, source.table.data());
  }
  const auto bytes = [&](auto member, std::size_t out, std::size_t in, auto... more) {
    compare(path, source, out * n, in, [&](Rows rows, Bytes dst, Bytes src) { (rows.*member)(dst, src, n, more...); });
  };
  bytes(&CPDFRows::gray_from_gray, 2, n);
  bytes(&CPDFRows::gray_from_rgb, 2, 3 * n);
  bytes(&CPDFRows::gray_from_cmyk, 2, 4 * n);
  bytes(&CPDFRows::average4, 1, 4 * n);
  bytes(&CPDFRows::complement, 1, n);
  bytes(&CPDFRows::rgb_from_rgba, 3, 4 * n);
  bytes(&CPDFRows::gray_from_8bit, 2, n, entries);
  bytes(&CPDFRows::bytes_from_8bit, 1, n, entries);
  bytes(&CPDFRows::gray_from_1bit, 2, (n + 7) / 8, entries);
  bytes(&CPDFRows::bytes_from_1bit, 1, (n + 7) / 8, entries);
  const std::vector<std::uint8_t> alpha(n, entries[0]);
  bytes(&CPDFRows::rgba_from_rgb_and_alpha, 4, 3 * n, alpha.data());
  bytes(&CPDFRows::gray_alpha_from_gray_and_alpha, 2, n, alpha.data());
  compare(path, source, 4 * n, (n + 7) / 8,
          [&](Rows rows, Bytes dst, Bytes src) { rows.rgba_from_1bit(pixels(dst), src, n, source.table.data()); });
}

}  // namespace

std::string run_target(FuzzInput in, bool) {
  Source source;
  const std::size_t n = in.byte();
  source.skipped = in.byte() % functions;
  const std::string_view table = in.text(table_bytes), row = in.text();
  source.table.resize(256);
  std::memcpy(source.table.data(), table.data(), table.size());
  source.bytes.assign(row.begin(), row.end());
  source.grid = &grids()[source.table[0].b % grids().size()];
  for (const CPDFCpu cpu : {CPDFCpu::sse41, CPDFCpu::avx2, CPDFCpu::avx512}) {
    if (cpu_runs(cpu)) compare_all(rows_of(cpu), source, n);
  }
  return "";
}
