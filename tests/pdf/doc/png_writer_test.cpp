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

const unsigned char* bytes_of(const std::string& text) { return reinterpret_cast<const unsigned char*>(text.data()); }

std::string noise(std::size_t n, unsigned seed) {
  std::mt19937 random(seed);
  std::string text(n, '\0');
  for (char& c : text) c = static_cast<char>(random());
  return text;
}

bool write_png(CPDFByteSink& sink, const CPDFRasterInfo& info, const std::string& rows) {
  CPDFPngWriter writer(sink);
  if (!writer.begin(info)) return false;
  const std::size_t n = static_cast<std::size_t>(info.row_bytes());
  for (std::size_t y = 0; y < static_cast<std::size_t>(info.height); ++y) {
    if (!writer.write_row(bytes_of(rows) + y * n)) return false;
  }
  return writer.finish();
}

struct Case {
  const char* name;
  CPDFPixelFormat format;
  int index_bits;
  int width, height;
  int depth, color_type;
};

class PngWriter : public testing::TestWithParam<Case> {};

TEST_P(PngWriter, KeepsEveryPixel) {
  const Case& c = GetParam();
  CPDFRasterInfo info;
  info.width = c.width;
  info.height = c.height;
  info.format = c.format;
  info.index_bits = c.index_bits;
  if (c.format == CPDFPixelFormat::indexed) info.palette.assign(std::size_t{1} << c.index_bits, {3, 2, 1, 255});
  std::string rows = noise(static_cast<std::size_t>(info.row_bytes() * c.height), 7);
  const auto row_bytes = static_cast<std::size_t>(info.row_bytes());
  const int spare_bits =
      static_cast<int>(row_bytes * 8 - static_cast<std::size_t>(c.width) * static_cast<std::size_t>(info.bits_per_pixel()));
  for (std::size_t end = row_bytes; end <= rows.size(); end += row_bytes)
    rows[end - 1] = static_cast<char>(rows[end - 1] & 0xFF << spare_bits);
  MemorySink sink;
  ASSERT_TRUE(write_png(sink, info, rows));

  const PngReader png(sink.text);
  EXPECT_EQ(png.error, "");
  EXPECT_EQ(png.width, static_cast<unsigned>(c.width));
  EXPECT_EQ(png.height, static_cast<unsigned>(c.height));
  EXPECT_EQ(png.depth, c.depth);
  EXPECT_EQ(png.color_type, c.color_type);
  EXPECT_TRUE(png.rows == rows);
  EXPECT_TRUE(png.has_srgb);
  EXPECT_EQ(png.palette.substr(0, 3), info.palette.empty() ? "" : "\1\2\3");
}

// Noise does not shrink, so the larger ones take several blocks and chunks; rows longer than a
// block are filtered in pieces.
INSTANTIATE_TEST_SUITE_P(
    Formats, PngWriter,
    testing::Values(Case{"Gray1", CPDFPixelFormat::gray1, 0, 13, 9, 1, 0}, Case{"Gray8", CPDFPixelFormat::gray8, 0, 1, 1, 8, 0},
                    Case{"GrayAlpha", CPDFPixelFormat::gray_alpha8, 0, 33, 5, 8, 4},
                    Case{"Index1", CPDFPixelFormat::indexed, 1, 9, 4, 1, 3}, Case{"Index2", CPDFPixelFormat::indexed, 2, 9, 4, 2, 3},
                    Case{"Index4", CPDFPixelFormat::indexed, 4, 9, 4, 4, 3}, Case{"Index8", CPDFPixelFormat::indexed, 8, 9, 4, 8, 3},
                    Case{"Rgb", CPDFPixelFormat::rgb8, 0, 640, 500, 8, 2}, Case{"Rgba", CPDFPixelFormat::rgba8, 0, 321, 7, 8, 6},
                    Case{"WideRgb", CPDFPixelFormat::rgb8, 0, 200001, 3, 8, 2},
                    Case{"WideGray1", CPDFPixelFormat::gray1, 0, 5000001, 2, 1, 0}),
    [](const auto& tested) { return tested.param.name; });

TEST(PngWriterResolution, IsToldInPixelsAMetre) {
  struct {
    double x, y;
    unsigned ppm_x, ppm_y;
  } const cases[] = {{300, 72, 11811, 2835}, {300, 0, 0, 0}, {1e300, 72, 0, 0}};
  for (const auto& c : cases) {
    MemorySink sink;
    CPDFRasterInfo info{2, 1, CPDFPixelFormat::gray8, 8, {}, c.x, c.y};
    ASSERT_TRUE(write_png(sink, info, "ab"));
    const PngReader png(sink.text);
    EXPECT_EQ(png.ppm_x, c.ppm_x);
    EXPECT_EQ(png.ppm_y, c.ppm_y);
  }
}

TEST(PngWriterBytes, DoNotDependOnWhereTheEncoderLies) {
  const CPDFRasterInfo info{4, 4, CPDFPixelFormat::gray8, 8, {}, 0, 0};
  const std::string rows(16, '\x27');
  MemorySink first;
  ASSERT_TRUE(write_png(first, info, rows));
  // Writers that stay alive keep their memory, so each of these lies elsewhere.
  std::vector<std::unique_ptr<CPDFPngWriter>> writers;
  MemorySink ignored;
  for (int i = 0; i < 150; ++i) {
    writers.push_back(std::make_unique<CPDFPngWriter>(ignored));
    ASSERT_TRUE(writers.back()->begin(info));
    MemorySink again;
    ASSERT_TRUE(write_png(again, info, rows));
    ASSERT_TRUE(again.text == first.text) << i;
  }
}

TEST(PngWriterFailure, SinkThatFillsUpIsReportedWhereverItDoes) {
  const CPDFRasterInfo info{700, 500, CPDFPixelFormat::rgb8, 8, {}, 0, 0};
  const std::string rows = noise(static_cast<std::size_t>(info.row_bytes() * info.height), 3);
  MemorySink whole;
  ASSERT_TRUE(write_png(whole, info, rows));
  for (const std::size_t capacity : {std::size_t{0}, std::size_t{60}, whole.text.size() / 2, whole.text.size() - 1}) {
    MemorySink sink(capacity);
    EXPECT_FALSE(write_png(sink, info, rows)) << capacity;
  }
}

}  // namespace
