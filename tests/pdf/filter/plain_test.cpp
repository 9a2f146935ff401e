// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <utility>
#include <vector>

#include "pdf/filter/flate.h"
#include "pdf/filter/png_rows.h"
#include "tests/pdf/filter/samples.h"

namespace filter_test {
namespace {

// The same however they are read.
TEST(PlainFilters, BringBytesBack) {
  using Text = const std::string&;
  const struct {
    const char *name, *parms;
    std::string (*encode)(Text bytes);
  } cases[] = {
      {"FlateDecode", "", [](Text bytes) { return deflate(bytes); }},
      {"A85", "", encode_ascii85},
      {"AHx", "", encode_ascii_hex},
      {"RL", "", encode_run_length},
      {"LZWDecode", "", [](Text bytes) { return encode_lzw(bytes); }},
      {"LZW", "<</EarlyChange 0>>", [](Text bytes) { return encode_lzw(bytes, 0); }},
      {"LZW", "<</EarlyChange 1>>", [](Text bytes) { return encode_lzw(bytes, 1, true); }},
      {"LZW", "<</EarlyChange 0>>", [](Text bytes) { return encode_lzw(bytes, 0, true); }},
  };
  for (const auto& [name, parms, encode] : cases) {
    for (const std::size_t n : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 127U, 128U, 129U, 130U, 1000U, 65536U, 70001U, 1000003U}) {
      if (n > 100000 && name[0] != 'F') continue;
      const std::string bytes = sample_bytes(n, 3) + std::string(n / 2, '\0'), encoded = encode(bytes);
      for (const int piece : {1, 7, 129, 4096, 65535, 65536, 65537, 3000000}) {
        if (piece < 4096 && n > 70000) continue;
        const Decoded decoded = decode(name, encoded, {parms, "", piece});
        ASSERT_EQ(decoded.bytes, bytes) << name << parms << ' ' << n << " in pieces of " << piece;
        ASSERT_FALSE(decoded.report.damaged) << decoded.report.problem;
      }
    }
  }
}

// A reader of exactly the data's bytes is told of a wrong checksum, and of nothing when only the
// end of the data is missing.
TEST(Flate, ChecksTheSumWithTheLastByte) {
  for (const std::size_t n : {100UL, 65536UL, 131072UL, 200000UL}) {
    const std::string bytes = sample_bytes(n, 5), good = deflate(bytes), open = good.substr(0, good.size() - 4);
    for (const std::string& encoded : {open + "sum?", open}) {
      CPDFFilterSetup setup;
      setup.report = std::make_shared<CPDFDecodeReport>();
      std::string out(n, '\0');
      ASSERT_EQ(pdfbmp::make_flate(stream_over(encoded), setup)->read_block(out.data(), static_cast<int>(n)), static_cast<int>(n));
      EXPECT_EQ(out, bytes);
      EXPECT_EQ(setup.report->damaged, encoded != open) << n << setup.report->problem;
    }
  }
}

TEST(Flate, ReadsRawDataAndBrokenHeaders) {
  const std::string bytes = sample_bytes(90000, 6), good = deflate(bytes);
  for (const std::string& encoded :
       {deflate(bytes, false), "\x78\x9d" + good.substr(2), "\x7f" + good.substr(1), std::string("no Flate"), std::string()}) {
    const Decoded decoded = decode("Fl", encoded);
    EXPECT_TRUE(decoded.report.damaged);
    EXPECT_TRUE(encoded.size() < 100 || encoded[0] == '\x7f' || decoded.bytes == bytes);
  }
}

TEST(PlainFilters, ReadWhatWritersDo) {
  const struct {
    const char *name, *filter, *encoded, *decoded;
    bool damaged;
  } cases[] = {
      {"whole group", "A85", "87cUR~>", "Hell", false},
      {"part of a group", "A85", "87cURDZ~>", "Hello", false},
      {"white space inside", "A85", " 87 c\nU\tR\r\f~ >", "Hell", false},
      {"half an end marker", "A85", "87cUR~", "Hell", false},
      {"no end marker", "A85", "87cUR", "Hell", true},
      {"one digit too many", "A85", "87cURD~>", "Hell", false},
      {"z inside a group", "A85", "87cURDzDZ~>", "Hell", true},
      {"group beyond 32 bits", "A85", "87cURuuuuu87cUR~>", "Hell", true},
      {"foreign character", "A85", "87cUR\17787cUR~>", "Hell", true},
      {"text after the end", "A85", "87cUR~>87cUR", "Hell", false},
      {"both cases", "AHx", "4a4B>", "JK", false},
      {"odd digits", "AHx", "4A5>", "JP", false},
      {"white space", "AHx", "4 A\n4\r\nB >", "JK", false},
      {"no end marker", "AHx", "4a4b", "JK", true},
      {"foreign character", "AHx", "4a4b!4c>", "JK", true},
      {"empty", "AHx", ">", "", false},
      {"copy and repeat", "RL", "\2abc\376d\200", "abcddd", false},
      {"text after the end", "RL", "\2abc\200\1zz", "abc", false},
      {"copy cut short", "RL", "\5abc", "abc", true},
      {"repeat cut short", "RL", "\1ab\376", "ab", true},
      {"the example of ISO 32000-2, 7.4.4.2", "LZW", "\x80\x0b\x60\x50\x22\x0c\x0c\x85\x01", "-----A---B", false},
  };
  for (const auto& one : cases) {
    const Decoded decoded = decode(one.filter, one.encoded);
    EXPECT_EQ(decoded.bytes, one.decoded) << one.filter << ": " << one.name;
    EXPECT_EQ(decoded.report.damaged, one.damaged) << one.filter << ": " << one.name;
  }
}

TEST(LZW, NeedsNoMarkers) {
  const std::string bytes = sample_bytes(3000, 8);
  const Decoded decoded = decode("LZW", encode_lzw(bytes, 1, false, false));
  EXPECT_EQ(decoded.bytes.substr(0, bytes.size()), bytes);
}

// After the clear code only single bytes are known; and no code is beyond the next to be added.
TEST(LZW, StopsAtCodesThatDoNotExist) {
  const struct {
    std::vector<int> codes;
    const char* decoded;
    bool damaged;
  } cases[] = {
      {{256, 65, 300, 66, 257}, "A", true}, {{256, 65, 258, 257}, "AAA", false},      {{256, 65, 259, 66, 257}, "A", true},
      {{256, 258, 65, 257}, "", true},      {{65, 256, 66, 258, 257}, "ABBB", false}, {{256, 256, 65, 66, 257}, "AB", false},
  };
  for (const auto& one : cases) {
    std::string bits;
    for (const int code : one.codes) {
      for (int i = 8; i >= 0; --i) bits += (code >> i & 1) != 0 ? '1' : '0';
    }
    const Decoded decoded = decode("LZW", pack_bits(bits));
    EXPECT_EQ(decoded.bytes, one.decoded);
    EXPECT_EQ(decoded.report.damaged, one.damaged) << decoded.report.problem;
  }
}

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
          const std::string parms =
              dict_of({{"Predictor", tiff ? 2 : 10 + type}, {"Colors", colors}, {"BitsPerComponent", bits}, {"Columns", columns}});
          const bool lzw = colors == 3;
          const std::string encoded = lzw ? encode_lzw(predicted) : deflate(predicted);
          for (const int piece : {1 << 16, 5}) {
            const Decoded decoded = decode(lzw ? "LZW" : "Fl", encoded, {parms, "", piece});
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
    for (std::string* row : {&filtered, &above}) {
      for (char& byte : *row) byte = static_cast<char>(seed % 2 != 0 ? (byte & 3) - 2 : byte);
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
    const std::string parms = dict_of({{"Predictor", 15}, {"Columns", 4}, {one.key, one.value}});  // The last of a key counts.
    const Decoded decoded = decode(one.filter, deflate(std::string(100, 'x')), {parms});
    EXPECT_TRUE(!decoded.made && decoded.report.damaged && !decoded.report.problem.empty()) << parms;
  }
}

// A row cut short keeps the bytes that came, finished; an unknown filter type is told.
TEST(Predictor, KeepsWhatCameOfABrokenRow) {
  const std::string rows = sample_bytes(60, 4);
  const Setting setting = {"<</Predictor 15/Colors 3/Columns 4>>"};
  const std::string predicted = png_predict(rows, 12, 3, 5);
  for (std::size_t cut = 1; cut < predicted.size(); ++cut) {
    const std::size_t expected = cut / 13 * 12 + (cut % 13 > 0 ? cut % 13 - 1 : 0);
    EXPECT_EQ(decode("Fl", deflate(predicted.substr(0, cut)), setting).bytes, rows.substr(0, expected));
  }
  std::string unknown = predicted;
  unknown[26] = 5;
  const Decoded decoded = decode("Fl", deflate(unknown), setting);
  EXPECT_EQ(decoded.bytes.substr(0, 24), rows.substr(0, 24));
  EXPECT_TRUE(decoded.report.damaged);
}

}  // namespace
}  // namespace filter_test
