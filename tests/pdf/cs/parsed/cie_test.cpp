// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tests/pdf/cs/parsed/cie_reference.h"

namespace {

using namespace testing_support;

constexpr Xyz d50 = {0.9642, 1, 0.8249}, d65 = {0.9505, 1, 1.089}, a_light = {1.0985, 1, 0.3558};

TEST(CalGray, FollowsTheFormula) {
  struct Case {
    const char* entry;
    double gamma;
  };
  const Case cases[] = {
      {"[/CalGray <</WhitePoint [0.9642 1 0.8249] /Gamma 2.2>>]", 2.2},
      {"[/CalGray <</WhitePoint [1.0985 1 0.3558] /Gamma 1.8>>]", 1.8},
      {"[/CalGray <</WhitePoint [0.9505 1 1.089]>>]", 1},
      {"[/CalGray <</WhitePoint [0.9505 1 1.089] /Gamma -3>>]", 1},
      {"[/CalGray <<>>]", 1},
  };
  for (const Case& c : cases) {
    const auto space = space_of(c.entry);
    ASSERT_TRUE(space) << c.entry;
    for (int v = 0; v < 256; ++v) {
      const int gray = srgb_encode(std::pow(v / 255.0, c.gamma));
      expect_near(rgb_of(*space, {v}), {gray, gray, gray}, 1, c.entry);
    }
    expect_runs_agree(*space);
  }
}

TEST(CalRgb, FollowsTheFormula) {
  struct Case {
    const char* entry;
    Xyz white;
    double gamma[3];
    double matrix[9];
  };
  const Case cases[] = {
      {"[/CalRGB <</WhitePoint [0.9505 1 1.089] /Gamma [2.2 2.2 2.2] "
       "/Matrix [0.4124 0.2126 0.0193 0.3576 0.7152 0.1192 0.1805 0.0722 0.9505]>>]",
       d65,
       {2.2, 2.2, 2.2},
       {0.4124, 0.2126, 0.0193, 0.3576, 0.7152, 0.1192, 0.1805, 0.0722, 0.9505}},
      {"[/CalRGB <</WhitePoint [0.9642 1 0.8249] /Gamma [1.8 2.0 2.2] "
       "/Matrix [0.7977 0.2880 0 0.1352 0.7119 0 0.0313 0.0001 0.8249]>>]",
       d50,
       {1.8, 2.0, 2.2},
       {0.7977, 0.2880, 0, 0.1352, 0.7119, 0, 0.0313, 0.0001, 0.8249}},
      {"[/CalRGB <</WhitePoint [1.0985 1 0.3558]>>]", a_light, {1, 1, 1}, {1, 0, 0, 0, 1, 0, 0, 0, 1}},
  };
  for (const Case& c : cases) {
    const auto space = space_of(c.entry);
    ASSERT_TRUE(space) << c.entry;
    EXPECT_EQ(space->family, 4);
    for (int r = 0; r < 256; r += 17)
      for (int g = 0; g < 256; g += 51)
        for (int b = 0; b < 256; b += 51) {
          const double v[3] = {std::pow(r / 255.0, c.gamma[0]), std::pow(g / 255.0, c.gamma[1]), std::pow(b / 255.0, c.gamma[2])};
          const double* m = c.matrix;
          const Xyz xyz = {m[0] * v[0] + m[3] * v[1] + m[6] * v[2], m[1] * v[0] + m[4] * v[1] + m[7] * v[2],
                           m[2] * v[0] + m[5] * v[1] + m[8] * v[2]};
          expect_near(rgb_of(*space, {r, g, b}), srgb_of(xyz, c.white), 1, c.entry);
        }
    expect_runs_agree(*space);
  }
}

TEST(Lab, FollowsTheFormula) {
  struct Case {
    const char* entry;
    Xyz white;
    double a_low, a_high, b_low, b_high;
  };
  const Case cases[] = {
      {"[/Lab <</WhitePoint [0.9642 1 0.8249]>>]", d50, -100, 100, -100, 100},
      {"[/Lab <</WhitePoint [0.9505 1 1.089] /Range [-128 127 -128 127]>>]", d65, -128, 127, -128, 127},
      {"[/Lab <</WhitePoint [1.0985 1 0.3558] /Range [-20 60 0 100]>>]", a_light, -20, 60, 0, 100},
      {"[/Lab <</WhitePoint [0.9642 1 0.8249] /Range [9 -9 0 1]>>]", d50, -100, 100, -100, 100},
  };
  for (const Case& c : cases) {
    const auto space = space_of(c.entry);
    ASSERT_TRUE(space) << c.entry;
    for (int l = 0; l < 256; l += 15)
      for (int a = 0; a < 256; a += 51)
        for (int b = 0; b < 256; b += 51)
          expect_near(rgb_of(*space, {l, a, b}),
                      srgb_of_lab(l / 2.55, c.a_low + (c.a_high - c.a_low) * a / 255, c.b_low + (c.b_high - c.b_low) * b / 255, c.white), 1,
                      c.entry);
    expect_runs_agree(*space);
  }
}

}  // namespace
