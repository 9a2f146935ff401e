// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include "examples/encoders/fax_encoder.h"
#include "pdf/filter/jbig2_helper.h"
#include "tests/pdf/filter/jbig2_builder.h"
#include "tests/pdf/filter/samples.h"

namespace filter_test {
namespace {

using Random = std::mt19937;

// Rows in the manner of scanned text: runs of many lengths, most rows like the one above them.
FaxRows make_picture(int width, int height, Random& random) {
  FaxRows rows;
  const auto up_to = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  const int longest = 1 + up_to(up_to(4) == 0 ? width : 40);
  for (int y = 0; y < height; ++y) {
    std::string row;
    const int manner = y == 0 ? 0 : up_to(5);
    if (manner == 1) row.assign(static_cast<std::size_t>(width), up_to(4) == 0 ? '1' : '0');
    char color = up_to(2) == 0 ? '0' : '1';
    if (manner == 0) {
      while (static_cast<int>(row.size()) < width) {
        row.append(static_cast<std::size_t>(1 + up_to(longest)), color);
        color = color == '0' ? '1' : '0';
      }
      row.resize(static_cast<std::size_t>(width));
    }
    if (manner >= 2) {
      row = rows.back();
      for (int i = up_to(4); i > 0; --i) { row[static_cast<std::size_t>(up_to(width))] = color; }
      if (manner == 4) row = (color + row).substr(0, static_cast<std::size_t>(width));
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
      for (int options_bits = 0; options_bits < 8; ++options_bits) {
        FaxOptions options;
        options.k = k;
        options.end_of_line = k >= 0 && (options_bits & 1) != 0;
        options.end_of_block = (options_bits & 2) != 0;
        options.align = (options_bits & 4) == 0                    ? FaxAlign::none
                        : options.end_of_line && pictures % 2 == 0 ? FaxAlign::code
                                                                   : FaxAlign::row;
        const int height = 1 + pictures % 13;
        const bool black_is_1 = pictures % 3 == 0;
        const FaxRows rows = make_picture(width, height, random);
        const std::string encoded = encode_fax(rows, options);
        Parms parms({{"K", k}, {"Columns", width}});
        parms.with_bool("EndOfLine", options.end_of_line);
        parms.with_bool("EncodedByteAlign", options.align != FaxAlign::none);
        parms.with_bool("EndOfBlock", options.end_of_block).with_bool("BlackIs1", black_is_1);
        // Where nothing else tells the end, one of the two heights does.
        Parms image({{"Height", height}});
        const bool by_rows = !options.end_of_block && pictures % 2 == 0;
        if (by_rows) parms.dict.set("Rows")->set_int(height);
        const CPDFDictionary* const dict = options.end_of_block || by_rows ? nullptr : &image.dict;
        for (const int piece : {1 << 16, 1 + pictures % 9}) {
          const Decoded decoded = decode("CCF", encoded, &parms.dict, piece, dict);
          SCOPED_TRACE(testing::Message() << "width " << width << " K " << k << " options " << options_bits << " piece " << piece);
          ASSERT_EQ(decoded.bytes, pack_fax_rows(rows, black_is_1));
          ASSERT_FALSE(decoded.report.damaged) << decoded.report.problem;
        }
        ++pictures;
      }
    }
  }
  EXPECT_GE(pictures, 2000);
}

// Every run length of both colours, in the codes that JBIG2's decoder knows too.
TEST(CCITT, KnowsEveryRun) {
  FaxRows rows;
  const std::size_t width = 5300;
  for (std::size_t run = 0; run <= width; run += run < 2700 ? 1 : 13) {
    const std::size_t black = std::min(run, width - run);
    rows.push_back(std::string(run, '0') + std::string(black, '1') + std::string(width - run - black, '0'));
  }
  const Parms parms({{"Columns", static_cast<int>(width)}});
  EXPECT_TRUE(decode("CCITTFaxDecode", encode_fax(rows, {}), &parms.dict).bytes == pack_fax_rows(rows, false));
#ifdef PDFBMP_JBIG2_HELPER
  pdfbmp::set_jbig2_helper(PDFBMP_JBIG2_HELPER);
  const std::string jbig2 = jbig2_page(width, rows.size()) + jbig2_generic(2, rows, 0);
  EXPECT_TRUE(decode("JBIG2Decode", jbig2).bytes == pack_fax_rows(rows, false));
#endif
}

// T.6 data by hand: rows of 8 pixels, black from 2 to 5, then the same, then white.
TEST(CCITT, ReadsDataMadeByHand) {
  // Horizontal, white 2 (0111), black 4 (011), then V0 to the end; V0 V0 V0; pass, V0; EOFB.
  // 001 0111 011 1 | 1 1 1 | 0001 1 | 000000000001 000000000001
  const std::string encoded("\x2e\xfc\x60\x02\x00\x20", 6);
  const Parms parms({{"K", -1}, {"Columns", 8}});
  const Decoded decoded = decode("CCF", encoded, &parms.dict);
  EXPECT_EQ(decoded.bytes, std::string("\xc3\xc3\xff"));
  EXPECT_FALSE(decoded.report.damaged) << decoded.report.problem;
}

// With end-of-line codes the rows after a damaged one are right again, the damaged row is a copy of
// the one above it, and DamagedRowsBeforeError says what is worth telling.
TEST(CCITT, ResynchronisesAtEndOfLineCodes) {
  FaxRows rows;
  for (std::size_t y = 0; y < 12; ++y) { rows.push_back(std::string(40 + y, '0') + std::string(100 - y, '1')); }
  for (const int k : {0, 4}) {
    FaxOptions options;
    options.k = k;
    options.end_of_line = true;
    std::vector<std::size_t> begins;
    std::string encoded = encode_fax(rows, options, &begins);
    // The white run of row 4, a one-dimensional one, becomes a code that does not exist.
    const std::size_t at = begins[4] + 12 + (k > 0 ? 1 : 0);
    for (std::size_t bit = at; bit < at + 9; ++bit) {
      const int mask = 0x80 >> bit % 8;
      const int byte = encoded[bit / 8];
      encoded[bit / 8] = static_cast<char>(bit < at + 8 ? byte & ~mask : byte | mask);
    }
    for (const int tolerated : {0, 100}) {
      const Parms parms({{"K", k}, {"Columns", 140}, {"DamagedRowsBeforeError", tolerated}});
      const Decoded decoded = decode("CCF", encoded, &parms.dict);
      FaxRows expected = rows;
      expected[4] = rows[3];
      // Rows that tell only what differs from the one above are lost with it.
      for (std::size_t y = 5; k > 0 && y < 8; ++y) expected[y] = std::string(140, '0');
      EXPECT_EQ(decoded.bytes, pack_fax_rows(expected, false)) << k;
      EXPECT_EQ(decoded.report.damaged, tolerated == 0) << k;
    }
  }
}

// Noise ends somewhere, in bounds, whatever the parameters are.
TEST(CCITT, SurvivesNoise) {
  Random random(3);
  for (int i = 0; i < 600; ++i) {
    std::string noise(1 + random() % 300, '\0');
    for (char& c : noise) c = static_cast<char>(random() % 4 == 0 ? 0 : random());
    Parms parms({{"K", static_cast<int>(random() % 3) - 1}, {"Columns", 1 + static_cast<int>(random() % 90)}});
    parms.with_bool("EndOfLine", random() % 2 == 0).with_bool("EndOfBlock", random() % 2 == 0);
    parms.with_bool("EncodedByteAlign", random() % 2 == 0);
    const Parms image({{"Height", 50}});
    EXPECT_LE(decode("CCF", noise, &parms.dict, 7, &image.dict).bytes.size(), 50U * 12);
  }
}

}  // namespace
}  // namespace filter_test
