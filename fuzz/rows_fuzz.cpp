// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// A row function of every path that this CPU runs, against its scalar twin. Source and
// destination are of exactly the size that the contract of pdf/cs/rows.h gives them.
//
// Input: a count, which function, then the source: 256 table entries of four bytes each, and the row.
#include <cstring>
#include <memory>
#include <vector>

#include "fuzz/target.h"
#include "tests/support/row_functions.h"

namespace {

constexpr std::size_t table_bytes = 1024, grid_entries = std::size_t{17} * 17 * 17 * 17 * 3;

/// A table that reaches less far than colours may, or the whole one: some pixels are not served.
const std::vector<unsigned short>& grid_of(std::size_t sixteenths) {
  static std::vector<unsigned short> made[17];
  std::vector<unsigned short>& grid = made[sixteenths];
  if (!grid.empty()) return grid;
  grid.resize(sixteenths * grid_entries / 16);
  for (std::size_t i = 0; i < grid.size(); ++i) grid[i] = static_cast<unsigned short>(i * 40503U >> 3);
  return grid;
}

}  // namespace

std::string run_target(FuzzInput in, bool) {
  const std::size_t n = in.byte(), which = in.byte();
  std::vector<_KXRGBA> table(256);
  const std::string_view entries = in.text(table_bytes), bytes = in.text();
  std::memcpy(table.data(), entries.data(), entries.size());
  const std::vector<unsigned short>& grid = grid_of(table[0].b % 17U);
  const auto functions = row_functions({table.data(), grid.data(), grid.size()});
  const RowFunction& row = functions[which % functions.size()];

  // A copy of just the bytes that may be read.
  const std::size_t read = row.source_bytes(n), written = n * row.out;
  const auto source = std::make_unique<std::uint8_t[]>(read);
  for (std::size_t i = 0; i < read && !bytes.empty(); ++i) source[i] = static_cast<std::uint8_t>(bytes[i % bytes.size()]);
  const auto run = [&](const CPDFRows& rows) {
    auto result = std::make_unique<std::uint8_t[]>(written);
    std::memset(result.get(), 7, written);  // What a pixel keeps that the grid cannot serve.
    row.call(rows, result.get(), source.get(), n);
    return result;
  };
  const auto want = run(scalar_rows);
  for (const CPDFCpu cpu : {CPDFCpu::sse41, CPDFCpu::avx2, CPDFCpu::avx512}) {
    if (cpu_runs(cpu)) require(std::memcmp(want.get(), run(rows_of(cpu)).get(), written) == 0);
  }
  return "";
}
