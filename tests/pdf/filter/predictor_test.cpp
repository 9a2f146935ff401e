// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <utility>

#include "pdf/filter/png_rows.h"
#include "tests/pdf/filter/samples.h"

namespace filter_test {
namespace {

// Every sample size and colour count, every PNG type and TIFF, rows that do and do not fill their
// last byte, read in pieces that fit no row.
TEST(Predictor, BringsRowsBack) {
  for (const int bits : {1, 2, 4, 8, 16}) {
    for (int colors = 1; colors <= 9; ++colors) {
      for (const int columns : {1, 2, 3, 7, 33, 300}) {
        const int row_bytes = (columns * colors * bits + 7) / 8;
        const int step = (colors * bits + 7) / 8;
        std::string rows = sample_bytes(static_cast<std::size_t>(row_bytes) * 7, static_cast<std::uint32_t>(bits));
        for (const int type : {0, 1, 2, 3, 4, 5, 6}) {
          const bool tiff = type == 6;
          const std::string predicted = tiff ? tiff_predict(rows, row_bytes, colors, bits) : png_predict(rows, row_bytes, step, type);
          const Parms parms({{"Predictor", tiff ? 2 : 10 + type}, {"Colors", colors}, {"BitsPerComponent", bits}, {"Columns", columns}});
          const bool lzw = colors == 3;
          const std::string encoded = lzw ? encode_lzw(predicted) : deflate(predicted);
          for (const int piece : {1 << 16, 5}) {
            const Decoded decoded = decode(lzw ? "LZW" : "Fl", encoded, &parms.dict, piece);
            ASSERT_EQ(decoded.bytes, rows) << bits << ' ' << colors << ' ' << columns << ' ' << type;
            ASSERT_FALSE(decoded.report.damaged) << decoded.report.problem;
          }
        }
      }
    }
  }
}

template <int... Steps>
void compare_paeth(std::integer_sequence<int, Steps...>, const std::string& filtered, const std::string& above) {
  const auto compare = [&](auto undo, auto vector_undo, int step) {
    for (int n = 0; n <= 50; ++n) {
      std::string rows[2] = {filtered, filtered};
      const auto* up = reinterpret_cast<const unsigned char*>(above.data());
      const int done = undo(reinterpret_cast<unsigned char*>(rows[0].data()), up, n);
      EXPECT_EQ(vector_undo(reinterpret_cast<unsigned char*>(rows[1].data()), up, n), done) << step;
      EXPECT_EQ(done, n / step * step);
      EXPECT_EQ(rows[1], rows[0]) << step << ' ' << n;
    }
  };
  (compare(pdfbmp::undo_paeth_lanes<Steps>, pdfbmp::undo_paeth_sse41<Steps>, Steps), ...);
}

// Beside each other on bytes at random and on the outermost ones, where distances are largest and
// equal most often.
TEST(Predictor, VectorFormOfPaethIsTheOther) {
#ifdef __x86_64__
  if (!__builtin_cpu_supports("sse4.1")) GTEST_SKIP();
  for (std::uint32_t seed = 0; seed < 200; ++seed) {
    std::string filtered = sample_bytes(64, seed), above = sample_bytes(64, seed + 1000);
    if (seed % 2 != 0) {
      for (std::string* row : {&filtered, &above}) {
        for (char& byte : *row) byte = static_cast<char>((byte & 3) - 2);
      }
    }
    compare_paeth(std::integer_sequence<int, 1, 2, 3, 4, 6, 8>(), filtered, above);
  }
#endif
}

TEST(Predictor, RefusesParametersThatDescribeNoRow) {
  const int most = 2147483647;
  const struct {
    const char *filter, *key;
    int value;
  } cases[] = {
      {"Fl", "Predictor", 3},        {"Fl", "Predictor", -1},        {"Fl", "Predictor", 16},   {"LZW", "BitsPerComponent", 7},
      {"Fl", "BitsPerComponent", 0}, {"Fl", "BitsPerComponent", 32}, {"Fl", "Colors", 0},       {"Fl", "Colors", -3},
      {"LZW", "Colors", most},       {"Fl", "Columns", 0},           {"Fl", "Columns", -most},  {"Fl", "Columns", most},
      {"CCF", "Columns", 0},         {"CCF", "Columns", -1},         {"CCF", "Columns", -most}, {"CCF", "Columns", most},
  };
  for (const auto& one : cases) {
    Parms parms({{"Predictor", 15}, {"Columns", 4}});
    parms.dict.set(one.key)->set_int(one.value);
    const Decoded decoded = decode(one.filter, deflate(std::string(100, 'x')), &parms.dict);
    EXPECT_FALSE(decoded.made) << one.key << ' ' << one.value;
    EXPECT_TRUE(decoded.report.damaged && !decoded.report.problem.empty()) << one.key << ' ' << one.value;
  }
}

// A row cut short keeps the bytes that came, finished; an unknown filter type is told.
TEST(Predictor, KeepsWhatCameOfABrokenRow) {
  const std::string rows = sample_bytes(60, 4);
  const Parms parms({{"Predictor", 15}, {"Colors", 3}, {"Columns", 4}});
  const std::string predicted = png_predict(rows, 12, 3, 5);
  for (std::size_t cut = 1; cut < predicted.size(); ++cut) {
    const std::size_t whole_rows = cut / 13;
    const std::size_t expected = whole_rows * 12 + (cut % 13 > 0 ? cut % 13 - 1 : 0);
    EXPECT_EQ(decode("Fl", deflate(predicted.substr(0, cut)), &parms.dict).bytes, rows.substr(0, expected));
  }
  std::string unknown = predicted;
  unknown[26] = 77;
  const Decoded decoded = decode("Fl", deflate(unknown), &parms.dict);
  EXPECT_EQ(decoded.bytes.substr(0, 24), rows.substr(0, 24));
  EXPECT_TRUE(decoded.report.damaged);
}

}  // namespace
}  // namespace filter_test
