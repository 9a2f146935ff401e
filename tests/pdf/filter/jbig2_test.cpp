// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/jbig2.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>

#include "pdf/filter/jbig2_helper.h"
#include "pdf/obj/object.h"
#include "pdf/obj/xref.h"
#include "tests/pdf/filter/samples.h"

using filter_test::Parms;

namespace {

constexpr int width = 45, height = 30;

/// The pictures of the tests: 1 is black.
bool black(int x, int y) { return (x * x + y * 3) % 11 < 4 + y % 3; }

std::string big_endian(std::uint32_t v, int n) {
  std::string bytes;
  while (n-- > 0) bytes += static_cast<char>(v >> (8 * n));
  return bytes;
}

/// T.6 with nothing but horizontal modes, in runs of at most 7, and an end-of-block code.
template <class Pixel>
std::string mmr(int columns, int rows, Pixel&& is_black) {
  static const char* const codes[2][8] = {{"00110101", "000111", "0111", "1000", "1011", "1100", "1110", "1111"},
                                          {"0000110111", "010", "11", "10", "011", "0011", "0010", "00011"}};
  std::string bits;
  for (int y = 0; y < rows; ++y) {
    for (int x = 0; x < columns;) {
      bits += "001";
      for (const int color : {0, 1}) {
        const int start = x;
        while (x < columns && x < start + 7 && is_black(x, y) == (color != 0)) ++x;
        bits += codes[color][x - start];
      }
    }
  }
  bits += "000000000001000000000001";
  bits.resize((bits.size() + 7) / 8 * 8, '0');
  std::string bytes;
  for (std::size_t i = 0; i < bits.size(); i += 8) { bytes += static_cast<char>(std::stoi(bits.substr(i, 8), nullptr, 2)); }
  return bytes;
}

std::string segment(std::uint32_t number, int type, int page, const std::string& data, const std::string& reference = "") {
  return big_endian(number, 4) + static_cast<char>(type) + static_cast<char>(reference.size() << 5) + reference + static_cast<char>(page) +
         big_endian(static_cast<std::uint32_t>(data.size()), 4) + data;
}

std::string page_segment(std::uint32_t columns, std::uint32_t rows) {
  return segment(1, 48, 1, big_endian(columns, 4) + big_endian(rows, 4) + std::string(11, '\0'));
}

std::string region(int columns, int rows, int y) {
  return big_endian(static_cast<std::uint32_t>(columns), 4) + big_endian(static_cast<std::uint32_t>(rows), 4) + big_endian(0, 4) +
         big_endian(static_cast<std::uint32_t>(y), 4) + '\0';
}

/// The rows of `black` from `from` to `to`, where they belong.
std::string generic_segment(std::uint32_t number, int from, int to) {
  return segment(number, 38, 1,
                 region(width, to - from, from) + '\1' + mmr(width, to - from, [&](int x, int y) { return black(x, from + y); }));
}

template <class Pixel>
std::string expected_rows(int columns, int rows, Pixel&& is_black) {
  std::string bytes;
  for (int y = 0; y < rows; ++y) {
    for (int x = 0; x < columns; x += 8) {
      int byte = 0;
      for (int i = 0; i < 8; ++i) {
        const bool dark = x + i < width && y < height && is_black(x + i, y);
        byte = byte << 1 | (dark ? 0 : 1);
      }
      bytes += static_cast<char>(byte);
    }
  }
  return bytes;
}

class Globals : public CPDFXRefTable {
 public:
  explicit Globals(std::string bytes) : bytes_(std::move(bytes)) {}
  int get_entity(CPDFObj& out, const PDF_REF&) override { return out.set_stream() != nullptr; }
  CPDFStream* make_stream(const CPDFStreamRec*) override { return filter_test::stream_over(bytes_).release(); }

 private:
  std::string bytes_;
};

struct Decoded {
  std::string bytes;
  CPDFDecodeReport report;
};

Decoded decode(const std::string& encoded, CPDFFilterSetup setup = {}) {
  setup.report = std::make_shared<CPDFDecodeReport>();
  const auto stream = pdfbmp::make_jbig2(filter_test::stream_over(encoded), setup);
  Decoded decoded;
  decoded.bytes = filter_test::read_all(*stream, 100);
  decoded.report = *setup.report;
  return decoded;
}

class JBIG2 : public ::testing::Test {
 protected:
  void SetUp() override {
#ifdef PDFBMP_JBIG2_HELPER
    pdfbmp::set_jbig2_helper(PDFBMP_JBIG2_HELPER);
#else
    GTEST_SKIP() << "the helper was not built";
#endif
  }
};

}  // namespace

TEST_F(JBIG2, GivesThePageInTheSizeOfTheDictionary) {
  const std::string page = page_segment(width, height) + generic_segment(2, 0, height);
  for (const std::string& encoded : {page, page + segment(3, 49, 1, "")}) {
    EXPECT_EQ(decode(encoded).bytes, expected_rows(width, height, black));
  }
  for (const auto& [columns, rows] : {std::pair{45, 30}, {20, 12}, {90, 30}, {45, 40}}) {
    Parms image({{"Width", columns}, {"Height", rows}});
    CPDFFilterSetup setup;
    setup.image = &image.dict;
    const Decoded decoded = decode(page, setup);
    const std::string expected = expected_rows((columns + 7) / 8 * 8, std::min(rows, height), black);
    EXPECT_EQ(decoded.bytes, expected) << columns;
    EXPECT_EQ(decoded.report.damaged, rows > height) << decoded.report.problem;
  }
}

TEST_F(JBIG2, GlobalSegmentsComeFirst) {
  // Two patterns of 4 x 4 in the globals, laid out by a halftone region: none black, one a ring.
  const auto ring = [](int x, int y) { return x % 4 == 0 || y % 4 == 0; };
  const auto chosen = [](int x, int y) { return (x + y * y) % 3 == 1; };
  const std::string patterns = std::string("\1\4\4", 3) + big_endian(1, 4) + mmr(8, 4, [&](int x, int y) { return x >= 4 && ring(x, y); });
  Globals globals(segment(0, 16, 0, patterns));
  const std::string grid = big_endian(10, 4) + big_endian(7, 4) + std::string(8, '\0') + big_endian(4 << 8, 2) + big_endian(0, 2);
  const std::string encoded =
      page_segment(width, height) + segment(2, 22, 1, region(width, height, 0) + '\1' + grid + mmr(10, 7, chosen), std::string(1, '\0'));
  Parms parms({});
  parms.dict.set("JBIG2Globals")->set_ref({7, 0});
  CPDFFilterSetup setup;
  setup.parms = &parms.dict;
  setup.xref = &globals;
  const Decoded decoded = decode(encoded, setup);
  EXPECT_EQ(decoded.bytes,
            expected_rows(width, height, [&](int x, int y) { return x < 40 && y < 28 && chosen(x / 4, y / 4) && ring(x, y); }));
  EXPECT_FALSE(decoded.report.damaged) << decoded.report.problem;
  // Without them the region has no patterns.
  EXPECT_TRUE(decode(encoded).report.damaged);
}

TEST_F(JBIG2, CutDataGivesTheSegmentsBeforeTheCut) {
  const std::string first = page_segment(width, height) + generic_segment(2, 0, 10);
  const std::string whole = first + generic_segment(3, 10, height);
  EXPECT_EQ(decode(whole).bytes, expected_rows(width, height, black));
  for (const std::size_t size : {std::size_t{5}, first.size() - 1, first.size() + 5, first.size() + 30, whole.size() - 1}) {
    const Decoded cut = decode(whole.substr(0, size));
    EXPECT_TRUE(cut.report.damaged) << size;
    EXPECT_EQ(cut.bytes, size < first.size() ? "" : expected_rows(width, height, [](int x, int y) { return y < 10 && black(x, y); }))
        << size;
  }
}

TEST_F(JBIG2, WhatCannotBeIsAProblemAndNothingElse) {
  const std::string page = page_segment(width, height) + generic_segment(2, 0, height);
  struct Case {
    std::string encoded, helper, problem;
  };
  const std::string built = pdfbmp::jbig2_helper();
  for (const Case& c : {Case{page_segment(100000, 100000), built, "limits"},
                        {page_segment(0xFFFFFFFF, 0xFFFFFFFF), built, "limits"},
                        {"no segments, but bytes", built, ""},
                        {std::string(1 << 20, '\xFF'), built, ""},
                        {page, "", "without its helper"},
                        {page, "/nowhere/pdfbmp-jbig2", "cannot be started"},
                        {page, "/bin/false", "before its time"}}) {
    pdfbmp::set_jbig2_helper(c.helper);
    const Decoded decoded = decode(c.encoded);
    EXPECT_EQ(decoded.bytes, "");
    EXPECT_TRUE(decoded.report.damaged);
    EXPECT_NE(decoded.report.problem, "");
    EXPECT_NE(decoded.report.problem.find(c.problem), std::string::npos) << decoded.report.problem;
  }
}
