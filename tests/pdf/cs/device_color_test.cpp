// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "gtest/gtest.h"

#include <array>
#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "pdf/cs/device_cmyk.h"
#include "pdf/cs/device_cmyk_ext.h"
#include "pdf/cs/device_gray.h"
#include "pdf/cs/device_rgb.h"
#include "tests/pdf/cs/grid_table.h"
#include "tests/support/color_runs.h"

namespace {

using namespace testing_support;

/// Components past the space's own hold values that must not matter, and that get_cmyk leaves.
PDF_COLOR filled(const std::vector<int>& values) {
  PDF_COLOR color = color_of(values);
  for (int i = 4; i < 16; ++i) color.val[i] = 1000 + i;
  return color;
}

int gray_of(CPDFCSBase& cs, const std::vector<int>& values) {
  unsigned char gray = 77;
  cs.get_gray(filled(values), gray);
  return gray;
}

std::vector<int> cmyk_of(CPDFCSBase& cs, const std::vector<int>& values) {
  PDF_COLOR cmyk = filled({-1, -1, -1, -1});
  cs.get_cmyk(filled(values), cmyk);
  for (int i = 4; i < 16; ++i) EXPECT_EQ(cmyk.val[i], 1000 + i);
  return {cmyk.val[0], cmyk.val[1], cmyk.val[2], cmyk.val[3]};
}

std::vector<int> first_color_of(CPDFCSBase&& cs) {
  PDF_COLOR color = filled({-1, -1, -1, -1});
  cs.get_default_color(color);
  for (int i = 4; i < 16; ++i) EXPECT_EQ(color.val[i], 1000 + i);
  return {color.val[0], color.val[1], color.val[2], color.val[3]};
}

TEST(DeviceColor, BlackIsTheFirstColour) {
  EXPECT_EQ(first_color_of(CPDFCSDeviceGray()), (std::vector{0, 0, 0, 0}));
  EXPECT_EQ(first_color_of(CPDFCSDeviceRGB()), (std::vector{0, 0, 0, 0}));
  EXPECT_EQ(first_color_of(CPDFCSDeviceCMYK()), (std::vector{0, 0, 0, 255}));
  EXPECT_EQ(first_color_of(CPDFCSDeviceCMYKExt()), (std::vector{0, 0, 0, 255}));
}

TEST(DeviceColor, Gray) {
  CPDFCSDeviceGray cs;
  struct Case {
    int value, byte, black;
  } const cases[] = {{0, 0, 255}, {255, 255, 0}, {300, 44, -45}, {-1, 255, 256}, {100, 100, 155}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.value);
    EXPECT_EQ(gray_of(cs, {c.value}), c.byte);
    EXPECT_EQ(rgb_of(cs, {c.value}), (Rgb{c.byte, c.byte, c.byte}));
    EXPECT_EQ(cmyk_of(cs, {c.value}), (std::vector{0, 0, 0, c.black}));
  }
}

TEST(DeviceColor, Rgb) {
  CPDFCSDeviceRGB cs;
  struct Case {
    std::vector<int> rgb;
    int gray;
    std::vector<int> cmyk;
  } const cases[] = {{{255, 0, 0}, 76, {0, 255, 255, 0}},  {{0, 255, 0}, 149, {255, 0, 255, 0}}, {{0, 0, 255}, 29, {255, 255, 0, 0}},
                     {{255, 255, 255}, 255, {0, 0, 0, 0}}, {{0, 0, 0}, 0, {0, 0, 0, 255}},       {{100, 150, 200}, 140, {100, 50, 0, 55}},
                     {{256, 0, 0}, 76, {0, 0, 0, 255}},    {{-1, 0, 0}, 255, {0, 255, 255, 0}},  {{INT_MAX, 0, 0}, 255, {0, 255, 255, 0}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.rgb[0]);
    EXPECT_EQ(gray_of(cs, c.rgb), c.gray);
    EXPECT_EQ(rgb_of(cs, c.rgb), (Rgb{c.rgb[0] & 255, c.rgb[1] & 255, c.rgb[2] & 255}));
    EXPECT_EQ(cmyk_of(cs, c.rgb), c.cmyk);
  }
}

TEST(DeviceColor, CmykByFormula) {
  CPDFCSDeviceCMYK cs;
  CPDFCSDeviceCMYKExt ext;
  struct Case {
    std::vector<int> cmyk;
    Rgb rgb;
    int gray;
  } const cases[] = {
      {{0, 0, 0, 0}, {254, 254, 254}, 255},  {{255, 0, 0, 0}, {0, 171, 237}, 179},    {{0, 255, 0, 0}, {234, 0, 138}, 106},
      {{0, 0, 255, 0}, {254, 241, 0}, 226},  {{0, 0, 0, 255}, {34, 31, 31}, 0},       {{255, 255, 0, 0}, {45, 48, 144}, 30},
      {{0, 255, 255, 0}, {235, 27, 35}, 77}, {{255, 0, 255, 0}, {0, 164, 79}, 150},   {{255, 255, 255, 0}, {53, 53, 56}, 0},
      {{255, 255, 255, 255}, {0, 0, 0}, 0},  {{128, 128, 128, 128}, {71, 61, 59}, 0}, {{0, 0, 0, 128}, {143, 141, 141}, 127}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.cmyk));
    EXPECT_EQ(rgb_of(cs, c.cmyk), c.rgb);
    for (CPDFCSBase* each : {static_cast<CPDFCSBase*>(&cs), static_cast<CPDFCSBase*>(&ext)}) {
      EXPECT_EQ(gray_of(*each, c.cmyk), c.gray);
      PDF_COLOR copy = {};
      each->get_cmyk(filled(c.cmyk), copy);
      for (int i = 4; i < 16; ++i) EXPECT_EQ(copy.val[i], 1000 + i);
    }
  }
  // Out of range: the shift of the luma keeps its sign, the ink is compared without one.
  EXPECT_EQ(gray_of(cs, {-1024, 0, 0, 306}), 255);
  EXPECT_EQ(gray_of(cs, {-1024, 0, 0, 305}), 0);
  EXPECT_EQ(gray_of(cs, {-1, 0, 0, 1}), 255);
}

/// The table installed while it lives.
class Installed {
 public:
  explicit Installed(std::vector<unsigned short>& table) {
    CPDFCSDeviceCMYKExt::ms_icc = table.data();
    CPDFCSDeviceCMYKExt::ms_icc_end = table.data() + table.size();
  }
  ~Installed() { CPDFCSDeviceCMYKExt::ms_icc = CPDFCSDeviceCMYKExt::ms_icc_end = nullptr; }
};

TEST(DeviceColor, TableNodesAndRounding) {
  auto table = random_grid_table(7);
  const Installed installed(table);
  CPDFCSDeviceCMYKExt cs;
  // At a node the colour is the node's, whatever the nodes round it hold.
  for (const std::array<int, 4> node : {std::array{16, 16, 16, 16}, {1, 2, 3, 4}, {16, 1, 16, 1}, {1, 1, 1, 16}, {5, 16, 9, 1}}) {
    const size_t at = grid_entry(node[0], node[1], node[2], node[3]);
    EXPECT_EQ(rgb_of(cs, {16 * node[0] - 1, 16 * node[1] - 1, 16 * node[2] - 1, 16 * node[3] - 1}),
              (Rgb{table[at] >> 8, table[at + 1] >> 8, table[at + 2] >> 8}));
  }
  // Downward along cyan by 1 of 4096 parts less than a whole step rounds toward minus infinity.
  auto falling = grid_table([](int c, int, int, int) { return Rgb{c ? 0xFF : 0x100, 0, 0}; });
  const Installed second(falling);
  EXPECT_EQ(rgb_of(cs, {0, 15, 15, 15})[0], 0);
}

TEST(DeviceColor, WhatTheTableCannotServeStaysUntouched) {
  auto table = random_grid_table(8);
  CPDFCSDeviceCMYKExt cs;
  const auto served = [&cs](const std::vector<int>& values) {
    _KXRGBA pixel = {1, 2, 3, 4};
    cs.get_rgb(filled(values), pixel);
    const bool untouched = pixel.b == 1 && pixel.g == 2 && pixel.r == 3 && pixel.a == 4;
    EXPECT_TRUE(untouched || pixel.a == 255);
    return !untouched;
  };
  EXPECT_FALSE(served({0, 0, 0, 0})) << "no table";
  const Installed installed(table);
  struct Case {
    std::vector<int> cmyk;
    size_t entries;  ///< The table ends here.
    bool served;
  } const cases[] = {{{255, 255, 255, 255}, table.size(), true},
                     {{255, 255, 255, 255}, table.size() - 1, false},
                     {{300, 0, 0, 0}, table.size(), false},
                     {{INT_MAX, 0, 0, 0}, table.size(), false},
                     {{-2, 0, 0, 0}, table.size(), false},
                     {{-1, -1, -1, -1}, 3, true},
                     {{0, 0, 0, 300}, table.size(), true},
                     {{255, 255, 255, 256}, table.size(), false},
                     {{-1, -1, -1, 0}, 3, false},  // the node above black lies past the end
                     {{-1, -1, -1, 0}, 6, true},
                     {{-1, 1, 0, 0}, 921 + 2, false},
                     {{-1, 1, 0, 0}, 921 + 3, true},
                     {{0, -1, -1, -1}, 14739 + 2, false},
                     {{0, -1, -1, -1}, 14739 + 3, true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.cmyk) + " of " + std::to_string(c.entries));
    // A copy of that size, so that a sanitizer sees what lies behind it.
    std::vector<unsigned short> part(table.begin(), table.begin() + static_cast<long>(c.entries));
    const Installed cut(part);
    EXPECT_EQ(served(c.cmyk), c.served);
  }
}

TEST(DeviceColor, CmykCalcTakesTheStepsInFallingOrder) {
  auto table = random_grid_table(9);
  const size_t base = grid_entry(3, 4, 5, 6);
  constexpr int offsets[3] = {867, 51, 3};
  for (int m = 0; m < 16; ++m) {
    for (int y = 0; y < 16; ++y) {
      for (int k = 0; k < 16; ++k) {
        int frac[4] = {1234, m << 8, y << 8, k << 8}, out[3];
        CPDFCSDeviceCMYKExt::cmyk_calc(table.data() + base, frac, out);
        // The colour by thresholds: a sixteenth of the way is spent at the node that has every axis
        // whose fraction is above it.
        for (size_t ch = 0; ch < 3; ++ch) {
          int sum = 0;
          for (int level = 0; level < 16; ++level) {
            size_t at = base + ch;
            for (int axis = 0; axis < 3; ++axis) {
              if (frac[axis + 1] > level << 8) at += static_cast<size_t>(offsets[axis]);
            }
            sum += table[at];
          }
          ASSERT_EQ(out[ch], sum >> 4) << m << ' ' << y << ' ' << k;
        }
      }
    }
  }
}

TEST(DeviceColor, RunsEqualSingleColors) {
  auto table = random_grid_table(10);
  const Installed installed(table);
  CPDFCSDeviceGray gray;
  CPDFCSDeviceRGB rgb;
  CPDFCSDeviceCMYK cmyk;
  CPDFCSDeviceCMYKExt ext;
  for (CPDFCSBase* cs : std::initializer_list<CPDFCSBase*>{&gray, &rgb, &cmyk, &ext}) {
    SCOPED_TRACE(cs->family);
    expect_runs_agree(*cs);
  }
}

}  // namespace
