// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "tests/pdf/filter/samples.h"

namespace filter_test {
namespace {

TEST(TextFilters, BringBytesBack) {
  const struct {
    const char* filter;
    std::string (*encode)(const std::string&);
  } cases[] = {{"A85", encode_ascii85}, {"AHx", encode_ascii_hex}, {"RL", encode_run_length}};
  for (const auto& one : cases) {
    for (std::size_t n = 0; n < 100000; n += n < 20 ? 1 : 33333) {
      const std::string bytes = sample_bytes(n, 2) + std::string(n / 2, '\0');
      for (const int piece : {1, 3, 129, 1 << 17}) {
        const Decoded decoded = decode(one.filter, one.encode(bytes), nullptr, piece);
        ASSERT_EQ(decoded.bytes, bytes) << one.filter << ' ' << n << ' ' << piece;
        ASSERT_FALSE(decoded.report.damaged) << one.filter << decoded.report.problem;
      }
    }
  }
}

TEST(TextFilters, ReadWhatWritersDo) {
  const struct {
    const char* name;
    const char* filter;
    const char* encoded;
    const char* decoded;
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
      {"foreign character", "A85",
       "87cUR\x7f"
       "87cUR~>",
       "Hell", true},
      {"text after the end", "A85", "87cUR~>87cUR", "Hell", false},
      {"both cases", "AHx", "4a4B>", "JK", false},
      {"odd digits", "AHx", "4A5>", "JP", false},
      {"white space", "AHx", "4 A\n4\r\nB >", "JK", false},
      {"no end marker", "AHx", "4a4b", "JK", true},
      {"foreign character", "AHx", "4a4b!4c>", "JK", true},
      {"empty", "AHx", ">", "", false},
      {"copy and repeat", "RL",
       "\x02"
       "abc\xfe"
       "d\x80",
       "abcddd", false},
      {"text after the end", "RL",
       "\x02"
       "abc\x80\x01zz",
       "abc", false},
      {"copy cut short", "RL",
       "\x05"
       "abc",
       "abc", true},
      {"repeat cut short", "RL",
       "\x01"
       "ab\xfe",
       "ab", true},
  };
  for (const auto& one : cases) {
    const Decoded decoded = decode(one.filter, one.encoded);
    EXPECT_EQ(decoded.bytes, one.decoded) << one.filter << ": " << one.name;
    EXPECT_EQ(decoded.report.damaged, one.damaged) << one.filter << ": " << one.name;
  }
}

}  // namespace
}  // namespace filter_test
