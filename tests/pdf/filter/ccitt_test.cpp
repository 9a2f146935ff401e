// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include "pdf/filter/jbig2_helper.h"
#include "tests/pdf/filter/samples.h"
#include "tools/encoders/fax_encoder.h"
#include "tools/encoders/jbig2_encoder.h"

namespace filter_test {
namespace {

using Random = std::mt19937;

// Rows in the manner of scanned text: runs of many lengths, most rows like the one above them.
FaxRows make_picture(std::size_t width, int height, Random& random) {
  const auto up_to = [&](std::size_t n) { return random() % n; };
  const std::size_t longest = 1 + up_to(up_to(4) == 0 ? width : 40);
  FaxRows rows;
  for (int y = 0; y < height; ++y) {
    const std::size_t manner = y == 0 ? 0 : up_to(5);
    char color = "01"[up_to(2)];
    std::string row;
    if (manner == 0) {
      for (; row.size() < width; color = color == '0' ? '1' : '0') row.append(1 + up_to(longest), color);
      row.resize(width);
    } else if (manner == 1) {
      row.assign(width, up_to(4) == 0 ? '1' : '0');
    } else {
      row = rows.back();
      for (std::size_t i = up_to(4); i > 0; --i) row[up_to(width)] = color;
      if (manner == 4) row = (color + row).substr(0, width);
    }
    rows.push_back(row);
  }
  return rows;
}

// Pictures of all widths to 70 and some large ones, with all options, bit for bit.
TEST(CCITT, BringsPicturesBack) {
  Random random(20);
  std::vector<int> widths = {1728, 2560, 2561, 2623, 2624, 5121, 7000};
  for (int width = 1; width <= 70; ++width) widths.push_back(width);
  int pictures = 0;
  for (const int width : widths) {
    for (const int k : {-1, 0, 1, 4}) {
      for (int bits = 0; bits < 8; ++bits, ++pictures) {
        FaxOptions options = {k, k >= 0 && (bits & 1) != 0};
        options.end_of_block = (bits & 2) != 0;
        if ((bits & 4) != 0) options.align = options.end_of_line && pictures % 2 == 0 ? FaxAlign::code : FaxAlign::row;
        const int height = 1 + pictures % 13;
        const bool black_is_1 = pictures % 3 == 0;
        // Where nothing else tells the end, one of the two heights does.
        const bool by_rows = !options.end_of_block && pictures % 2 == 0;
        std::string parms = "<</K " + std::to_string(k) + "/Columns " + std::to_string(width);
        if (options.end_of_line) parms += "/EndOfLine true";
        if (options.align != FaxAlign::none) parms += "/EncodedByteAlign true";
        if (!options.end_of_block) parms += "/EndOfBlock false";
        if (black_is_1) parms += "/BlackIs1 true";
        if (by_rows) parms += "/Rows " + std::to_string(height);
        const std::string image = options.end_of_block || by_rows ? "" : dict_of({{"Height", height}});
        const FaxRows rows = make_picture(static_cast<std::size_t>(width), height, random);
        const std::string encoded = encode_fax(rows, options);
        for (const int piece : {1 << 16, 1 + pictures % 9}) {
          const Decoded decoded = decode("CCF", encoded, {parms + ">>", image, piece});
          ASSERT_EQ(decoded.bytes, pack_fax_rows(rows, black_is_1)) << parms << " in pieces of " << piece;
          ASSERT_FALSE(decoded.report.damaged) << decoded.report.problem;
        }
      }
    }
  }
}

// Every run length of both colours, in the codes that JBIG2's decoder knows too.
TEST(CCITT, KnowsEveryRun) {
  FaxRows rows;
  const std::size_t width = 5300;
  for (std::size_t run = 0; run <= width; run += run < 2700 ? 1 : 13) {
    const std::size_t black = std::min(run, width - run);
    rows.push_back(std::string(run, '0') + std::string(black, '1') + std::string(width - run - black, '0'));
  }
  EXPECT_TRUE(decode("CCITTFaxDecode", encode_fax(rows, {}), {"<</Columns 5300>>"}).bytes == pack_fax_rows(rows, false));
#ifdef PDFBMP_JBIG2_HELPER
  pdfbmp::set_jbig2_helper(PDFBMP_JBIG2_HELPER);
  const std::string jbig2 = jbig2_page(width, rows.size()) + jbig2_generic(2, rows, 0);
  EXPECT_TRUE(decode("JBIG2Decode", jbig2).bytes == pack_fax_rows(rows, false));
#endif
}

// With end-of-line codes the rows after a damaged one are right again, the damaged row is a copy of
// the one above it, and DamagedRowsBeforeError says what is worth telling.
TEST(CCITT, ResynchronisesAtEndOfLineCodes) {
  FaxRows rows;
  for (std::size_t y = 0; y < 12; ++y) rows.push_back(std::string(40 + y, '0') + std::string(100 - y, '1'));
  for (const int k : {0, 4}) {
    std::vector<std::size_t> begins;
    std::string encoded = encode_fax(rows, {k, true}, &begins);
    // The white run of row 4, a one-dimensional one, becomes a code that does not exist: 00000000 1.
    const std::size_t at = begins[4] + 12 + (k > 0 ? 1 : 0);
    for (std::size_t bit = at; bit < at + 9; ++bit) {
      const int mask = 0x80 >> bit % 8, byte = encoded[bit / 8];
      encoded[bit / 8] = static_cast<char>(bit < at + 8 ? byte & ~mask : byte | mask);
    }
    FaxRows expected = rows;
    expected[4] = rows[3];
    // Rows that tell only what differs from the one above are lost with it.
    for (std::size_t y = 5; k > 0 && y < 8; ++y) expected[y] = std::string(140, '0');
    for (const int tolerated : {0, 100}) {
      const Decoded decoded = decode("CCF", encoded, {dict_of({{"K", k}, {"Columns", 140}, {"DamagedRowsBeforeError", tolerated}})});
      EXPECT_EQ(decoded.bytes, pack_fax_rows(expected, false)) << k;
      EXPECT_EQ(decoded.report.damaged, tolerated == 0) << k;
    }
  }
}

}  // namespace
}  // namespace filter_test
