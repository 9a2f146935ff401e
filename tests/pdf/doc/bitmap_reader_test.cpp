// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/bitmap_reader.h"

#include <cstring>
#include <gtest/gtest.h>

#include "tests/pdf/doc/documents.h"

namespace {

using Format = CPDFPixelFormat;

// A bitmap of two rows; the one lowest in memory is the picture's last.
template <class Bitmap>
const Bitmap& fill(Bitmap& bmp, const std::string& first, const std::string& last) {
  std::memcpy(bmp.pixels, last.data(), last.size());
  std::memcpy(bmp.pixels + bmp.stride, first.data(), first.size());
  return bmp;
}

void expect_picture(CPDFRasterReader* reader, Format format, const std::string& top, const std::string& bottom) {
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(reader->info().format, format);
  EXPECT_EQ(rows_of(*reader), (std::vector<Row>{Row(top.begin(), top.end()), Row(bottom.begin(), bottom.end())}));
}

TEST(BitmapReader, GivesTheSmallestFormatThatLosesNothing) {
  const std::string b("\0\0\0\xFF", 4), w("\xFF\xFF\xFF\xFF"), g("\x80\x80\x80\xFF"), clear(4, '\0'), tint("\1\2\3\xFF");
  const std::string blue("\xFF\0\0\xFF", 4), black3(3, '\0'), blue3("\0\0\xFF", 3), black_and_white("\0\xFF", 2);
  const struct {
    const char* name;
    bool colors;
    std::string first, last;  // Rows of the bitmap.
    Format format;
    std::string top, bottom;  // Rows of the picture.
  } cases[] = {
      {"black and white", true, b + w, w + w, Format::gray1, "\x40", "\xC0"},
      {"gray", true, b + w, w + g, Format::gray8, black_and_white, "\xFF\x80"},
      {"colour in the last row", true, b + b, b + tint, Format::rgb8, black3 + black3, black3 + "\3\2\1"},
      {"colour with extremes only", true, blue + b, b + b, Format::rgb8, blue3 + black3, black3 + black3},
      {"alpha in the last row", true, tint + g, g + clear, Format::rgba8, "\3\2\1\xFF\x80\x80\x80\xFF", g + clear},
      {"alpha in the first row", true, clear + g, g + g, Format::rgba8, clear + g, g + g},
      {"gray bitmap, black and white", false, w, black_and_white + "\xFF\xFF", Format::gray1, "\xC0", "\x40"},
      {"gray bitmap, levels", false, "\x01\xFF\xFF\xFF", "\x02\xFF\xFE\xFF", Format::gray8, "\x01\xFF", "\x02\xFE"},
      {"gray bitmap, alpha", false, "\x01\xFF\xFF\xFF", "\x02\xFF\x03\xFE", Format::gray_alpha8, "\x01\xFF\xFF\xFF", "\x02\xFF\x03\xFE"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    CKXBmp32 colors(2, 2);
    CKXBmpGray gray;
    gray.create(2, 2);
    const auto reader =
        c.colors ? pdfbmp::make_bitmap_reader(fill(colors, c.first, c.last)) : pdfbmp::make_bitmap_reader(fill(gray, c.first, c.last));
    expect_picture(reader.get(), c.format, c.top, c.bottom);
  }
}

TEST(BitmapReader, MaskAndIndexBitmaps) {
  const std::string first("\xFF\0\xFF", 3), last("\0\0\xFF", 3);
  CKXBmp8 bmp(3, 2);
  expect_picture(pdfbmp::make_bitmap_reader(fill(bmp, first, last)).get(), Format::gray8, first, last);

  _KXRGBA palette[256] = {};
  palette[255] = {4, 5, 6, 255};
  auto reader = pdfbmp::make_bitmap_reader(bmp, palette);
  expect_picture(reader.get(), Format::indexed, "\xA0", "\x20");
  EXPECT_EQ(reader->info().index_bits, 1);
  ASSERT_EQ(reader->info().palette.size(), 2u);
  EXPECT_EQ(reader->info().palette[1].b, 4);

  bmp.pixels[0] = 7;
  reader = pdfbmp::make_bitmap_reader(bmp, palette);
  EXPECT_EQ(reader->info().index_bits, 8);
  EXPECT_EQ(reader->info().palette.size(), 256u);
}

}  // namespace
