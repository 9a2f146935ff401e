// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tests/pdf/cs/parsed/cie_reference.h"
#include "tests/pdf/cs/parsed/profiles.h"

namespace {

using namespace testing_support;

TEST(IccBased, FallsBackToAlternateAndThenToTheDeviceSpace) {
  TextXRef xref;
  const std::string gray = gray_profile(2.2), rgb = rgb_profile(1.8), cmyk = cmyk_profile();
  xref.add_stream(1, "<</N 1>>", gray);
  xref.add_stream(2, "<</N 3>>", rgb);
  xref.add_stream(3, "<</N 4>>", cmyk);
  xref.add_stream(4, "<<>>", rgb);
  xref.add_stream(5, "<</N 1>>", rgb);
  xref.add_stream(6, "<</N 3>>", "no profile at all");
  xref.add_stream(7, "<</N 4>>", "");
  xref.add_stream(8, "<</N 3 /Alternate [/Lab <</WhitePoint [0.9642 1 0.8249]>>]>>", rgb.substr(0, rgb.size() / 2));
  xref.add_stream(9, "<</N 3 /Alternate /DeviceGray>>", "broken");
  xref.add_stream(10, "<</N 2 /Alternate /DeviceGray>>", "broken");
  xref.add_stream(11, "<</N 3 /Alternate [/ICCBased 11 0 R]>>", "broken");
  xref.add_stream(12, "<</N 3>>", encoders::srgb_profile());
  xref.add_stream(13, "<</Alternate /DeviceCMYK>>", "broken");
  xref.add_stream(14, "<</N 3>>", cmyk);
  xref.add(15, "<</N 3>>");
  struct Case {
    int object, family, components;
  };
  const Case cases[] = {
      {1, 7, 1}, {2, 7, 3},  {3, 7, 4},  {4, 7, 3},  {5, 1, 1},  {6, 3, 3},  {7, 5, 4},  {8, 6, 3},
      {9, 3, 3}, {10, 0, 0}, {11, 3, 3}, {12, 7, 3}, {13, 5, 4}, {14, 3, 3}, {15, 0, 0},
  };
  for (const Case& c : cases) {
    const auto space = space_of("[/ICCBased " + std::to_string(c.object) + " 0 R]", &xref);
    EXPECT_EQ(space ? space->family : 0, c.family) << c.object;
    EXPECT_EQ(space ? space->comp_count : 0, c.components) << c.object;
    if (space) expect_runs_agree(*space);
  }
}

TEST(IccBased, ConvertsByTheProfile) {
  TextXRef xref;
  xref.add_stream(3, "<</N 4>>", cmyk_profile());
  xref.add_stream(4, "<</N 3>>", encoders::srgb_profile());
  xref.add_stream(5, "<</N 3 /Range [0 100 -128 127 -128 127]>>", encoders::lab_profile());
  xref.add_stream(6, "<</N 3 /Range [0 0.5 0 1 0 1]>>", encoders::srgb_profile());
  const auto icc = [&](int object) { return space_of("[/ICCBased " + std::to_string(object) + " 0 R]", &xref); };
  const auto cmyk = icc(3), srgb = icc(4), lab = icc(5), half = icc(6);
  for (int i = 0; i < 256; ++i) {
    EXPECT_EQ(rgb_of(*srgb, {i, 9, 255 - i}), (Rgb{i, 9, 255 - i}));
    expect_near(rgb_of(*half, {i, 9, 255 - i}), {(i + 1) / 2, 9, 255 - i}, 2, "half the range");
  }
  for (int c = 0; c < 256; c += 51)
    for (int m = 0; m < 256; m += 51)
      for (int k = 0; k < 256; k += 51) {
        const auto light = [&](int ink) { return (255 - ink) * (255 - k) / 255; };
        expect_near(rgb_of(*cmyk, {c, m, 51, k}), {light(c), light(m), light(51)}, 2, "inks");
      }
  for (int l = 0; l < 256; l += 51)
    for (int a = 0; a < 256; a += 51)
      expect_near(rgb_of(*lab, {l, a, 140}), srgb_of_lab(l / 2.55, a - 128, 12, {0.9642, 1, 0.8249}), 2, "Lab profile");
}

}  // namespace
