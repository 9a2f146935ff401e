// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/png_writer.h"

#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/support/memory_sink.h"
#include "tests/support/png_reader.h"

namespace {

std::string noise(std::int64_t n, unsigned seed) {
  std::mt19937 random(seed);
  std::string text(static_cast<std::size_t>(n), '\0');
  for (char& c : text) c = static_cast<char>(random());
  return text;
}

bool write_png(CPDFByteSink& sink, const CPDFRasterInfo& info, const std::string& rows) {
  CPDFPngWriter writer(sink);
  bool good = writer.begin(info);
  const auto* row = reinterpret_cast<const unsigned char*>(rows.data());
  for (int y = 0; good && y < info.height; ++y, row += info.row_bytes()) good = writer.write_row(row);
  return good && writer.finish();
}

// Noise does not shrink, so the larger ones take several blocks and chunks; rows longer than a
// block are filtered in pieces.
TEST(PngWriter, KeepsEveryPixel) {
  using F = CPDFPixelFormat;
  const struct {
    F format;
    int index_bits, width, height, depth, color_type;
  } cases[] = {
      {F::gray1, 0, 13, 9, 1, 0},  {F::gray8, 0, 1, 1, 8, 0},     {F::gray_alpha8, 0, 33, 5, 8, 4}, {F::indexed, 1, 9, 4, 1, 3},
      {F::indexed, 2, 9, 4, 2, 3}, {F::indexed, 4, 9, 4, 4, 3},   {F::indexed, 8, 9, 4, 8, 3},      {F::rgb8, 0, 640, 500, 8, 2},
      {F::rgba8, 0, 321, 7, 8, 6}, {F::rgb8, 0, 200001, 3, 8, 2}, {F::gray1, 0, 5000001, 2, 1, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.width << " pixels of type " << c.color_type << ", " << c.depth << " bits");
    CPDFRasterInfo info{c.width, c.height, c.format, c.index_bits, {}, 0, 0};
    if (c.format == F::indexed) info.palette.assign(std::size_t{1} << c.index_bits, {3, 2, 1, 255});
    std::string rows = noise(info.row_bytes() * c.height, 7);
    const auto row_bytes = static_cast<std::size_t>(info.row_bytes());
    const std::int64_t spare_bits = info.row_bytes() * 8 - std::int64_t{c.width} * info.bits_per_pixel();
    for (std::size_t end = row_bytes; end <= rows.size(); end += row_bytes) {
      rows[end - 1] = static_cast<char>(rows[end - 1] & 0xFF << spare_bits);
    }
    MemorySink sink;
    ASSERT_TRUE(write_png(sink, info, rows));
    const PngReader png(sink.text);
    EXPECT_EQ(png.error, "");
    EXPECT_TRUE(static_cast<int>(png.width) == c.width && static_cast<int>(png.height) == c.height);
    EXPECT_TRUE(png.depth == c.depth && png.color_type == c.color_type && png.has_srgb);
    EXPECT_TRUE(png.rows == rows);
    EXPECT_EQ(png.palette.substr(0, 3), info.palette.empty() ? "" : "\1\2\3");
  }
}

TEST(PngWriter, BytesDoNotDependOnWhereTheEncoderLies) {
  const CPDFRasterInfo info{4, 4, CPDFPixelFormat::gray8, 8, {}, 0, 0};
  const std::string rows(16, '\x27');
  MemorySink first, ignored;
  ASSERT_TRUE(write_png(first, info, rows));
  // Writers that stay alive keep their memory, so each of these lies elsewhere.
  std::vector<std::unique_ptr<CPDFPngWriter>> writers;
  for (int i = 0; i < 150; ++i) {
    ASSERT_TRUE(writers.emplace_back(std::make_unique<CPDFPngWriter>(ignored))->begin(info));
    MemorySink again;
    ASSERT_TRUE(write_png(again, info, rows) && again.text == first.text) << i;
  }
}

TEST(PngWriter, TellsOfASinkThatFillsUpWhereverItDoes) {
  const CPDFRasterInfo info{700, 500, CPDFPixelFormat::rgb8, 8, {}, 0, 0};
  const std::string rows = noise(info.row_bytes() * info.height, 3);
  MemorySink whole;
  ASSERT_TRUE(write_png(whole, info, rows));
  for (const std::size_t capacity : {std::size_t{0}, std::size_t{60}, whole.text.size() / 2, whole.text.size() - 1}) {
    MemorySink sink(capacity);
    EXPECT_FALSE(write_png(sink, info, rows)) << capacity;
  }
}

}  // namespace
