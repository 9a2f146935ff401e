// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/bitmap_reader.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using Format = CPDFPixelFormat;

// The rows of a picture, from the top.
std::vector<std::string> rows_of(CPDFRasterReader& reader) {
  std::vector<std::string> rows;
  std::string row(static_cast<std::size_t>(reader.info().row_bytes()), '\0');
  while (reader.read_row(reinterpret_cast<unsigned char*>(row.data()))) rows.push_back(row);
  return rows;
}

// A bitmap of two rows; the one lowest in memory is the picture's last.
template <class Bitmap>
void fill(Bitmap& bmp, const std::string& first, const std::string& last) {
  std::memcpy(bmp.pixels, last.data(), last.size());
  std::memcpy(bmp.pixels + bmp.stride, first.data(), first.size());
}

struct Case {
  const char* name;
  std::string first, last;  // Rows of the bitmap.
  Format format;
  std::string top, bottom;  // Rows of the picture.
};

void expect_picture(const Case& c, CPDFRasterReader* reader) {
  ASSERT_NE(reader, nullptr) << c.name;
  EXPECT_EQ(reader->info().format, c.format) << c.name;
  EXPECT_EQ(rows_of(*reader), (std::vector<std::string>{c.top, c.bottom})) << c.name;
}

TEST(BitmapReader, GivesTheSmallestFormatThatLosesNothing) {
  const std::string b("\0\0\0\xFF", 4), w("\xFF\xFF\xFF\xFF"), g("\x80\x80\x80\xFF"), clear("\0\0\0\0", 4), tint("\1\2\3\xFF");
  const std::string black3("\0\0\0", 3);
  const Case colors[] = {
      {"black and white", b + w, w + w, Format::gray1, "\x40", "\xC0"},
      {"gray", b + w, w + g, Format::gray8, std::string("\0\xFF", 2), "\xFF\x80"},
      {"colour in the last row", b + b, b + tint, Format::rgb8, black3 + black3, black3 + "\3\2\1"},
      {"colour with extremes only", std::string("\xFF\0\0\xFF", 4) + b, b + b, Format::rgb8, std::string("\0\0\xFF", 3) + black3,
       black3 + black3},
      {"alpha in the last row", tint + g, g + clear, Format::rgba8, "\3\2\1\xFF\x80\x80\x80\xFF", g + clear},
      {"alpha in the first row", clear + g, g + g, Format::rgba8, clear + g, g + g},
  };
  for (const Case& c : colors) {
    CKXBmp32 bmp(2, 2);
    fill(bmp, c.first, c.last);
    expect_picture(c, pdfbmp::make_bitmap_reader(bmp).get());
  }

  const Case grays[] = {
      {"black and white", "\xFF\xFF\xFF\xFF", std::string("\0\xFF\xFF\xFF", 4), Format::gray1, "\xC0", "\x40"},
      {"levels", "\x01\xFF\xFF\xFF", "\x02\xFF\xFE\xFF", Format::gray8, "\x01\xFF", "\x02\xFE"},
      {"alpha", "\x01\xFF\xFF\xFF", "\x02\xFF\x03\xFE", Format::gray_alpha8, "\x01\xFF\xFF\xFF", "\x02\xFF\x03\xFE"},
  };
  for (const Case& c : grays) {
    CKXBmpGray bmp;
    bmp.create(2, 2);
    fill(bmp, c.first, c.last);
    expect_picture(c, pdfbmp::make_bitmap_reader(bmp).get());
  }
}

TEST(BitmapReader, MaskAndIndexBitmaps) {
  CKXBmp8 bmp(3, 2);
  fill(bmp, std::string("\xFF\0\xFF", 3), std::string("\0\0\xFF", 3));
  expect_picture({"mask", "", "", Format::gray8, std::string("\xFF\0\xFF", 3), std::string("\0\0\xFF", 3)},
                 pdfbmp::make_bitmap_reader(bmp).get());

  _KXRGBA palette[256] = {};
  palette[0] = {1, 2, 3, 255};
  palette[255] = {4, 5, 6, 255};
  auto reader = pdfbmp::make_bitmap_reader(bmp, palette);
  expect_picture({"two colours", "", "", Format::indexed, "\xA0", "\x20"}, reader.get());
  EXPECT_EQ(reader->info().index_bits, 1);
  ASSERT_EQ(reader->info().palette.size(), 2u);
  EXPECT_EQ(reader->info().palette[1].b, 4);

  bmp.pixels[0] = 7;
  reader = pdfbmp::make_bitmap_reader(bmp, palette);
  EXPECT_EQ(reader->info().index_bits, 8);
  EXPECT_EQ(reader->info().palette.size(), 256u);
}

TEST(BitmapReader, RefusesABitmapWithoutPixels) {
  EXPECT_EQ(pdfbmp::make_bitmap_reader(CKXBmp32(0, 5)), nullptr);
  EXPECT_EQ(pdfbmp::make_bitmap_reader(CKXBmpGray()), nullptr);
  EXPECT_EQ(pdfbmp::make_bitmap_reader(CKXBmp8(5, 0)), nullptr);
}

}  // namespace
