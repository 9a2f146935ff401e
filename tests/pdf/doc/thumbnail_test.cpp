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

CPDFRasterInfo info_of(int width, int height, Format format) {
  return {width, height, format, 2, {{0, 0, 255, 255}, {0, 200, 0, 255}}, 0, 0};
}

TEST(Thumbnail, AveragesBoxes) {
  struct {
    const char* what;
    CPDFRasterInfo info;
    std::string rows;
    int max_side;
    CPDFRasterInfo reduced_info;
    std::string reduced;  // Rows until there are no more.
  } const cases[] = {
      {"fits", info_of(3, 1, Format::gray1), "\xA0", 3, info_of(3, 1, Format::gray1), "\xA0"},
      {"bits", info_of(4, 2, Format::gray1), "\xB0\x40", 2, info_of(2, 1, Format::gray8), "\x80\x80"},
      {"unequal boxes", info_of(5, 1, Format::gray8), {"\0\12\1\2\4", 5}, 2, info_of(2, 1, Format::gray8), "\5\2"},
      {"a column", info_of(1, 9, Format::gray8), "\1\2\3\4\5\6\7\10\11", 3, info_of(1, 3, Format::gray8), "\2\5\10"},
      {"transparent", info_of(2, 1, Format::rgba8), {"abc\0def\0", 8}, 1, info_of(1, 1, Format::rgba8), {"\0\0\0\0", 4}},
      {"weights", info_of(2, 1, Format::rgba8), "\x10\x20\x30\x03\x50\x60\x70\x01", 1, info_of(1, 1, Format::rgba8), "\x20\x30\x40\x02"},
      {"gray weights", info_of(2, 1, Format::gray_alpha8), {"\x64\xFF\x0A\0", 4}, 1, info_of(1, 1, Format::gray_alpha8), "\x64\x80"},
      {"colours", info_of(2, 1, Format::rgb8), {"\0\1\2\2\3\5", 6}, 1, info_of(1, 1, Format::rgb8), "\1\2\4"},
      {"an index past the palette", info_of(4, 1, Format::indexed), "\x1D", 2, info_of(2, 1, Format::rgb8), {"\x80\x64\0\0\x64\0", 6}},
      {"missing rows", info_of(2, 4, Format::gray8), "\4\4\4\4\4\4", 2, info_of(1, 2, Format::gray8), "\4"},
  };
  for (const auto& c : cases) {
    const auto thumbnail = pdfbmp::make_thumbnail(std::make_unique<Rows>(c.info, c.rows), c.max_side);
    ASSERT_NE(thumbnail, nullptr) << c.what;
    const CPDFRasterInfo& info = thumbnail->info();
    EXPECT_TRUE(info.width == c.reduced_info.width && info.height == c.reduced_info.height) << c.what;
    EXPECT_EQ(info.format, c.reduced_info.format) << c.what;
    std::string reduced, row(static_cast<std::size_t>(info.row_bytes()), '\0');
    while (thumbnail->read_row(reinterpret_cast<unsigned char*>(row.data()))) reduced += row;
    EXPECT_EQ(reduced, c.reduced) << c.what;
  }
}

}  // namespace
