// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/thumbnail.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace {

using Format = CPDFPixelFormat;

// Rows that lie in memory; as many as there are, which may be fewer than told.
class Rows final : public CPDFRasterReader {
 public:
  Rows(CPDFRasterInfo info, std::string rows) : info_(std::move(info)), rows_(std::move(rows)) {}

  const CPDFRasterInfo& info() const override { return info_; }
  bool read_row(unsigned char* dst) override {
    const auto n = static_cast<std::size_t>(info_.row_bytes());
    if (rows_.size() - at_ < n) return false;
    std::copy_n(rows_.begin() + static_cast<std::ptrdiff_t>(at_), n, dst);
    at_ += n;
    return true;
  }

 private:
  CPDFRasterInfo info_;
  std::string rows_;
  std::size_t at_ = 0;
};

TEST(Thumbnail, AveragesBoxes) {
  const std::vector<_KXRGBA> palette = {{0, 0, 255, 255}, {0, 200, 0, 255}};
  struct {
    const char* what;
    CPDFRasterInfo info;
    std::string rows;
    int max_side;
    int width, height;
    Format format;
    std::string reduced;  // Rows until there are no more.
  } const cases[] = {
      {"fits", {3, 1, Format::gray1}, "\xA0", 3, 3, 1, Format::gray1, "\xA0"},
      {"bits", {4, 2, Format::gray1}, "\xB0\x40", 2, 2, 1, Format::gray8, "\x80\x80"},
      {"levels, boxes of unequal width", {5, 1, Format::gray8}, std::string("\0\12\1\2\4", 5), 2, 2, 1, Format::gray8, "\5\2"},
      {"columns keep a pixel", {1, 9, Format::gray8}, "\1\2\3\4\5\6\7\10\11", 3, 1, 3, Format::gray8, "\2\5\10"},
      {"what is transparent lends no colour",
       {2, 2, Format::gray_alpha8},
       std::string("\x64\xFF\x0A\0\x64\xFF\x0A\0", 8),
       1,
       1,
       1,
       Format::gray_alpha8,
       "\x64\x80"},
      {"all transparent", {2, 1, Format::rgba8}, std::string("abc\0def\0", 8), 1, 1, 1, Format::rgba8, std::string(4, '\0')},
      {"weights", {2, 1, Format::rgba8}, "\x10\x20\x30\x03\x50\x60\x70\x01", 1, 1, 1, Format::rgba8, "\x20\x30\x40\x02"},
      {"colours", {2, 1, Format::rgb8}, std::string("\0\1\2\2\3\5", 6), 1, 1, 1, Format::rgb8, "\1\2\4"},
      {"palette, with an index past it",
       {4, 1, Format::indexed, 2, palette},
       "\x1D",
       2,
       2,
       1,
       Format::rgb8,
       std::string("\x80\x64\0\0\x64\0", 6)},
      {"rows that do not come", {2, 4, Format::gray8}, "\4\4\4\4\4\4", 2, 1, 2, Format::gray8, "\4"},
  };
  for (const auto& c : cases) {
    const auto thumbnail = pdfbmp::make_thumbnail(std::make_unique<Rows>(c.info, c.rows), c.max_side);
    ASSERT_NE(thumbnail, nullptr) << c.what;
    const CPDFRasterInfo& info = thumbnail->info();
    EXPECT_EQ(std::make_pair(info.width, info.height), std::make_pair(c.width, c.height)) << c.what;
    EXPECT_EQ(info.format, c.format) << c.what;
    std::string reduced, row(static_cast<std::size_t>(info.row_bytes()), '\0');
    while (thumbnail->read_row(reinterpret_cast<unsigned char*>(row.data()))) reduced += row;
    EXPECT_EQ(reduced, c.reduced) << c.what;
  }
}

}  // namespace
