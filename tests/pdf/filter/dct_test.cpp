// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cstdlib>
#include <gtest/gtest.h>

#include "tests/pdf/filter/samples.h"
#include "tools/encoders/jpeg_encoder.h"

using filter_test::decode;
using filter_test::Decoded;

namespace {

/// Component `c` of a smooth picture, from 60 to 188, which a JPEG of quality 100 keeps within 2.
int smooth_sample(int x, int y, int c) {
  const int ramp = (x * (c + 1) + y * (3 - c % 3) + c * 40) % 256;
  return std::abs(ramp - 128) + 60;
}

std::string encode(const encoders::Jpeg& jpeg) { return encode_jpeg(jpeg, smooth_sample); }

// The end marker alone is missed by nobody, nor are other bytes around the JPEG.
TEST(DCT, NeedsNoEndAndNoBegin) {
  const std::string whole = encode({.restart_rows = 1});
  const Decoded open = decode("DCT", "\n junk\xFF" + whole.substr(0, whole.size() - 2));
  EXPECT_EQ(open.bytes, decode("DCT", whole).bytes);
  EXPECT_FALSE(open.report.damaged) << open.report.problem;
}

TEST(DCT, ProgressiveDataIsWholeOrCoarse) {
  const std::string whole = encode({.progressive = true});
  const std::string rows = decode("DCT", whole).bytes;
  EXPECT_EQ(rows, decode("DCT", encode({})).bytes);
  EXPECT_FALSE(decode("DCT", whole.substr(0, whole.size() - 2)).report.damaged);
  const Decoded cut = decode("DCT", whole.substr(0, whole.size() * 3 / 4));
  EXPECT_EQ(cut.bytes.size(), rows.size());
  EXPECT_TRUE(cut.report.damaged);
  // Nothing is made up below a break in the first scan.
  const std::size_t scan = whole.find("\xFF\xDA");
  const Decoded early = decode("DCT", whole.substr(0, scan + 20));
  EXPECT_TRUE(early.report.damaged);
  EXPECT_LT(early.bytes.size(), rows.size() / 2);
}

TEST(DCT, LimitsEndIt) {
  const std::string encoded = encode({.progressive = true});
  CPDFFilterLimits pixels, memory, scans;
  pixels.max_pixels = 40 * 48 - 1;
  memory.max_codec_bytes = 40 * 48 * 3 * 2 - 1;
  scans.max_scans = 2;
  for (const CPDFFilterLimits& limits : {pixels, memory, scans}) {
    const Decoded decoded = decode("DCT", encoded, {.limits = limits});
    EXPECT_EQ(decoded.bytes, "");
    EXPECT_NE(decoded.report.problem.find("limits"), std::string::npos) << decoded.report.problem;
  }
}

}  // namespace
