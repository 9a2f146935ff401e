// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "pdf/filter/flate.h"
#include "tests/pdf/filter/samples.h"

namespace filter_test {
namespace {

// Flate, run lengths and text, the same however they are read.
TEST(PlainFilters, BringBytesBack) {
  const struct {
    const char* filter;
    std::string (*encode)(const std::string&);
  } cases[] = {{"FlateDecode", [](const std::string& bytes) { return deflate(bytes); }},
               {"A85", encode_ascii85},
               {"AHx", encode_ascii_hex},
               {"RL", encode_run_length}};
  for (const auto& one : cases) {
    for (const std::size_t n : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 127U, 128U, 129U, 130U, 1000U, 65536U, 70001U, 1000003U}) {
      if (n > 100000 && one.filter[0] != 'F') continue;
      const std::string bytes = sample_bytes(n, 3) + std::string(n / 2, '\0');
      const std::string encoded = one.encode(bytes);
      for (const int piece : {1, 7, 129, 4096, 65535, 65536, 65537, 3000000}) {
        if (piece < 4096 && n > 70000) continue;
        const Decoded decoded = decode(one.filter, encoded, nullptr, piece);
        ASSERT_EQ(decoded.bytes, bytes) << one.filter << ' ' << n << " in pieces of " << piece;
        ASSERT_FALSE(decoded.report.damaged) << decoded.report.problem;
      }
    }
  }
}

// A reader of exactly the data's bytes is told of a wrong checksum, and of nothing when only the
// end of the data is missing.
TEST(Flate, ChecksTheSumWithTheLastByte) {
  for (const std::size_t n : {100UL, 65536UL, 131072UL, 200000UL}) {
    const std::string bytes = sample_bytes(n, 5);
    std::string wrong = deflate(bytes);
    wrong.back() = static_cast<char>(wrong.back() ^ 1);
    for (const bool cut : {false, true}) {
      const std::string encoded = cut ? wrong.substr(0, wrong.size() - 4) : wrong;
      CPDFFilterSetup setup;
      setup.report = std::make_shared<CPDFDecodeReport>();
      const auto stream = pdfbmp::make_flate(stream_over(encoded), setup);
      std::string out(n, '\0');
      ASSERT_EQ(stream->read_block(out.data(), static_cast<int>(n)), static_cast<int>(n));
      EXPECT_EQ(out, bytes);
      EXPECT_EQ(setup.report->damaged, !cut) << n << setup.report->problem;
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
  };
  for (const auto& one : cases) {
    const Decoded decoded = decode(one.filter, one.encoded);
    EXPECT_EQ(decoded.bytes, one.decoded) << one.filter << ": " << one.name;
    EXPECT_EQ(decoded.report.damaged, one.damaged) << one.filter << ": " << one.name;
  }
}

}  // namespace
}  // namespace filter_test
