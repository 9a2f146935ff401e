// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/flate.h"

#include <gtest/gtest.h>

#include "tests/pdf/filter/samples.h"

namespace filter_test {
namespace {

TEST(Flate, GivesTheSameBytesHoweverItIsRead) {
  for (const std::size_t n : {0UL, 1UL, 1000UL, 65536UL, 70001UL, 1000003UL}) {
    const std::string bytes = sample_bytes(n, 3);
    const std::string encoded = deflate(bytes);
    for (const int piece : {1, 7, 4096, 65535, 65536, 65537, 3000000}) {
      if (piece == 1 && n > 100000) continue;
      const Decoded decoded = decode("FlateDecode", encoded, nullptr, piece);
      ASSERT_EQ(decoded.bytes, bytes) << n << " in pieces of " << piece;
      ASSERT_FALSE(decoded.report.damaged) << decoded.report.problem;
    }
  }
}

// The bytes before the damage come out, and the report tells of it.
TEST(Flate, KeepsWhatCameBeforeTheDamage) {
  const std::string bytes = sample_bytes(500000, 9);
  const std::string good = deflate(bytes);
  for (const int percent : {0, 10, 50, 90}) {
    const std::size_t cut = good.size() * static_cast<std::size_t>(percent) / 100;
    const Decoded decoded = decode("Fl", good.substr(0, cut));
    EXPECT_TRUE(decoded.report.damaged) << percent;
    EXPECT_EQ(decoded.bytes, bytes.substr(0, decoded.bytes.size())) << percent;
    EXPECT_GE(decoded.bytes.size() * 100 + 4000000, bytes.size() * static_cast<unsigned>(percent));
  }
  for (std::size_t at = 2; at < good.size(); at += good.size() / 37) {
    std::string bad = good;
    bad[at] = static_cast<char>(bad[at] ^ 0x10);
    const Decoded decoded = decode("Fl", bad, nullptr, 3000);
    EXPECT_TRUE(decoded.report.damaged) << at;
    // Nothing before the changed byte is touched: bytes of noise cost at least one each.
    const std::string untouched = decode("Fl", good.substr(0, at)).bytes;
    EXPECT_EQ(decoded.bytes.substr(0, untouched.size() - untouched.size() / 50), bytes.substr(0, untouched.size() - untouched.size() / 50))
        << at;
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
  const std::string bytes = sample_bytes(90000, 6);
  const std::string good = deflate(bytes);
  std::string bad_check = good;
  bad_check[1] = static_cast<char>(bad_check[1] ^ 1);
  std::string bad_method = good;
  bad_method[0] = '\x7f';
  for (const std::string& encoded : {deflate(bytes, false), bad_check}) {
    const Decoded decoded = decode("Fl", encoded);
    EXPECT_EQ(decoded.bytes, bytes);
    EXPECT_TRUE(decoded.report.damaged);
  }
  EXPECT_TRUE(decode("Fl", bad_method).report.damaged);
  EXPECT_TRUE(decode("Fl", "not Flate data at all").report.damaged);
  EXPECT_TRUE(decode("Fl", "").report.damaged);
}

}  // namespace
}  // namespace filter_test
