// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/dct.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

#include "examples/encoders/jpeg_encoder.h"
#include "tests/pdf/filter/samples.h"

using encoders::Jpeg;
using filter_test::decode;
using filter_test::Decoded;
using filter_test::Parms;

namespace {

/// Component `c` of a smooth picture, from 60 to 188, which a JPEG of quality 100 keeps within 2.
int smooth_sample(int x, int y, int c) {
  const int ramp = (x * (c + 1) + y * (3 - c % 3) + c * 40) % 256;
  return std::abs(ramp - 128) + 60;
}

std::string encode(const encoders::Jpeg& jpeg) { return encoders::encode_jpeg(jpeg, smooth_sample); }

/// What a stored sample means, by the formulas of JFIF; CMY of YCCK is 255 less RGB.
std::array<double, 4> expected_sample(int x, int y, bool transformed, int components) {
  std::array<double, 4> v = {};
  for (int c = 0; c < 4; ++c) v[static_cast<std::size_t>(c)] = smooth_sample(x, y, c);
  if (!transformed) return v;
  const double luma = v[0], cb = v[1] - 128, cr = v[2] - 128;
  const std::array<double, 3> rgb = {luma + 1.402 * cr, luma - 0.344136 * cb - 0.714136 * cr, luma + 1.772 * cb};
  for (std::size_t c = 0; c < 3; ++c) {
    const double value = std::clamp(rgb[c], 0.0, 255.0);
    v[c] = components == 4 ? 255 - value : value;
  }
  return v;
}

}  // namespace

TEST(DCT, ColorTransformFollowsMarkerThenParameterThenComponents) {
  struct Case {
    J_COLOR_SPACE stored;
    int adobe, parameter;
    bool transformed;
  };
  const Case cases[] = {
      {JCS_GRAYSCALE, -1, -1, false}, {JCS_GRAYSCALE, -1, 1, false}, {JCS_YCbCr, -1, -1, true}, {JCS_YCbCr, -1, 0, false},
      {JCS_YCbCr, -1, 1, true},       {JCS_YCbCr, 0, 1, false},      {JCS_YCbCr, 0, -1, false}, {JCS_YCbCr, 1, 0, true},
      {JCS_RGB, -1, -1, false},       {JCS_RGB, -1, 1, true},        {JCS_RGB, 0, -1, false},   {JCS_CMYK, -1, -1, false},
      {JCS_CMYK, 0, -1, false},       {JCS_CMYK, 0, 1, false},       {JCS_YCCK, -1, 1, true},   {JCS_YCCK, -1, 0, false},
      {JCS_YCCK, 2, -1, true},        {JCS_YCCK, 2, 0, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.stored << ' ' << c.adobe << ' ' << c.parameter);
    const Jpeg jpeg{.stored = c.stored, .adobe = c.adobe};
    Parms parms({});
    if (c.parameter >= 0) parms.dict.set("ColorTransform")->set_int(c.parameter);
    const Decoded decoded = decode("DCTDecode", encode(jpeg), &parms.dict, 1000);
    const int n = components_of(jpeg);
    ASSERT_EQ(decoded.bytes.size(), static_cast<std::size_t>(jpeg.width * jpeg.height * n));
    EXPECT_FALSE(decoded.report.damaged) << decoded.report.problem;
    double worst = 0;
    for (int i = 0; i < jpeg.width * jpeg.height; ++i) {
      const auto expected = expected_sample(i % jpeg.width, i / jpeg.width, c.transformed, n);
      for (int k = 0; k < n; ++k) {
        worst = std::max(worst, std::abs(static_cast<unsigned char>(decoded.bytes.data()[i * n + k]) - expected.begin()[k]));
      }
    }
    EXPECT_LE(worst, 5);
  }
}

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
  const CPDFFilterLimits wide;
  CPDFFilterLimits pixels = wide, memory = wide, scans = wide;
  pixels.max_pixels = 40 * 48 - 1;
  memory.max_codec_bytes = 40 * 48 * 3 * 2 - 1;
  scans.max_scans = 2;
  for (const CPDFFilterLimits& limits : {pixels, memory, scans}) {
    CPDFFilterSetup setup;
    setup.limits = limits;
    const Decoded decoded = decode("DCT", encoded, setup, 100);
    EXPECT_EQ(decoded.bytes, "");
    EXPECT_NE(decoded.report.problem.find("limits"), std::string::npos) << decoded.report.problem;
  }
}
