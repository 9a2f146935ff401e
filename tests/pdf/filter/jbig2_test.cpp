// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "pdf/filter/jbig2_helper.h"
#include "tests/pdf/filter/samples.h"
#include "tests/support/pdf_text.h"
#include "tools/encoders/jbig2_encoder.h"

namespace filter_test {
namespace {

constexpr int width = 45, height = 30;

template <class Pixel>
FaxRows rows_of(int columns, int rows, Pixel&& is_black) {
  FaxRows picture(static_cast<std::size_t>(rows));
  for (int y = 0; y < rows; ++y) {
    for (int x = 0; x < columns; ++x) picture[static_cast<std::size_t>(y)] += is_black(x, y) ? '1' : '0';
  }
  return picture;
}

class JBIG2 : public testing::Test {
 protected:
  void SetUp() override {
#ifdef PDFBMP_JBIG2_HELPER
    pdfbmp::set_jbig2_helper(PDFBMP_JBIG2_HELPER);
#else
    GTEST_SKIP() << "the helper was not built";
#endif
  }

  const FaxRows picture_ = rows_of(width, height, [](int x, int y) { return (x * x + y * 3) % 11 < 4 + y % 3; });
  const std::string page_ = jbig2_page(width, height) + jbig2_generic(2, picture_, 0);
};

TEST_F(JBIG2, GivesThePageWithItsEndOrWithout) {
  for (const std::string& encoded : {page_, page_ + jbig2_segment(3, 49, 1, "")}) {
    const Decoded decoded = decode("JBIG2Decode", encoded);
    EXPECT_EQ(decoded.bytes, pack_fax_rows(picture_, false));
    EXPECT_FALSE(decoded.report.damaged) << decoded.report.problem;
  }
}

TEST_F(JBIG2, GlobalSegmentsComeFirst) {
  // Two patterns of 4 x 4 in the globals, laid out by a halftone region: none black, one a ring.
  const auto ring = [](int x, int y) { return x % 4 == 0 || y % 4 == 0; };
  const auto chosen = [](int x, int y) { return (x + y * y) % 3 == 1; };
  const auto t6 = [](int columns, int rows, auto&& pixel) { return encode_fax(rows_of(columns, rows, pixel), {-1}); };
  const std::string patterns = std::string("\1\4\4") + big_endian(1, 4) + t6(8, 4, [&](int x, int y) { return x >= 4 && ring(x, y); });
  testing_support::TextXRef xref;
  xref.add_stream(7, "<<>>", jbig2_segment(0, 16, 0, patterns));
  const std::string grid = big_endian(10, 4) + big_endian(7, 4) + std::string(8, '\0') + big_endian(4 << 8, 2) + big_endian(0, 2);
  const std::string region = jbig2_region(width, height, 0) + '\1' + grid + t6(10, 7, chosen);
  const std::string encoded = jbig2_page(width, height) + jbig2_segment(2, 22, 1, region, std::string(1, '\0'));
  const Decoded decoded = decode("JBIG2Decode", encoded, {.parms = "<</JBIG2Globals 7 0 R>>", .xref = &xref});
  const auto shown = [&](int x, int y) { return x < 40 && y < 28 && chosen(x / 4, y / 4) && ring(x, y); };
  EXPECT_EQ(decoded.bytes, pack_fax_rows(rows_of(width, height, shown), false));
  EXPECT_FALSE(decoded.report.damaged) << decoded.report.problem;
  // Without them the region has no patterns.
  EXPECT_TRUE(decode("JBIG2Decode", encoded).report.damaged);
}

TEST_F(JBIG2, WhatCannotBeIsAProblemAndNothingElse) {
  const std::string built = pdfbmp::jbig2_helper();
  const struct {
    std::string encoded, helper, problem;
  } cases[] = {
      {jbig2_page(100000, 100000), built, "limits"},
      {jbig2_page(0xFFFFFFFF, 0xFFFFFFFF), built, "limits"},
      {jbig2_segment(0, 16, 1, {"\0\xFF\xFF\0\0\xFF\xFF", 7}), built, "dictionary"},
      {jbig2_segment(0, 16, 1, {"\0\3\1\0\0\xFF\xFF", 7}), built, "dictionary"},
      {jbig2_page(8, 8) + jbig2_segment(2, 6, 1, jbig2_region(8, 8, 0) + std::string(2, '\0') + std::string(99, '\xFF')), built, "regions"},
      {jbig2_page(8, 8) + jbig2_segment(2, 0, 1, std::string(10, '\0') + std::string(99, '\xFF')), built, "dictionary"},
      {jbig2_page(8, 8) + jbig2_segment(2, 22, 1, jbig2_region(8, 8, 0) + std::string(99, '\xFF')), built, "regions"},
      {"no segments, but bytes", built, ""},
      {std::string(1 << 20, '\xFF'), built, ""},
      {page_, "", "without its helper"},
      {page_, "/nowhere/pdfbmp-jbig2", "cannot be started"},
      {page_, "/bin/false", "before its time"},
      {page_.substr(0, page_.size() - 1), built, ""},
  };
  for (const auto& one : cases) {
    pdfbmp::set_jbig2_helper(one.helper);
    const Decoded decoded = decode("JBIG2Decode", one.encoded);
    EXPECT_EQ(decoded.bytes, "");
    EXPECT_TRUE(decoded.report.damaged && !decoded.report.problem.empty());
    EXPECT_NE(decoded.report.problem.find(one.problem), std::string::npos) << decoded.report.problem;
  }
}

}  // namespace
}  // namespace filter_test
