// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/device_cmyk.h"
#include "tests/pdf/cs/parsed/cie_reference.h"
#include "tests/pdf/cs/parsed/profiles.h"

namespace {

using namespace testing_support;

// Object 1: one tint to CMYK; 2: to Lab; 3: two tints to RGB; 4: five to gray, the mean.
class Tint : public ::testing::Test {
 protected:
  Tint() {
    xref.add(1, "<</FunctionType 2 /Domain [0 1] /N 1 /C0 [0 0 0 0] /C1 [0 1 0.5 0.25]>>");
    xref.add(2, "<</FunctionType 2 /Domain [0 1] /N 1 /C0 [100 0 0] /C1 [40 60 -30]>>");
    xref.add_stream(3, "<</FunctionType 4 /Domain [0 1 0 1] /Range [0 1 0 1 0 1]>>", "{ 2 copy mul }");
    xref.add_stream(4, "<</FunctionType 4 /Domain [0 1 0 1 0 1 0 1 0 1] /Range [0 1]>>", "{ add add add add 5 div }");
    xref.add(5, "[/Separation /Own 5 0 R 1 0 R]");
    xref.add_stream(6, "<</N 3>>", rgb_profile(1.8));
    xref.add(7, "<</FunctionType 2 /Domain [0 1] /N 2>>");
    xref.add_stream(8, "<</N 1>>", gray_profile(1.8));
  }
  TextXRef xref;
};

TEST_F(Tint, SeparationGoesThroughItsAlternate) {
  const auto cmyk = space_of("[/Separation /Spot /DeviceCMYK 1 0 R]", &xref);
  const auto lab = space_of("[/Separation /Spot [/Lab <</WhitePoint [0.9642 1 0.8249] /Range [-80 80 -80 80]>>] 2 0 R]", &xref);
  const auto one = space_of("[/DeviceN [/Spot] /DeviceCMYK 1 0 R]", &xref);
  const auto icc = space_of("[/Separation /Spot [/ICCBased 8 0 R] 7 0 R]", &xref);
  const auto cal = space_of("[/Separation /Spot [/CalGray <</Gamma 1.5>>] 7 0 R]", &xref);
  ASSERT_TRUE(cmyk && lab && one && icc && cal);
  EXPECT_EQ(cmyk->family, 9);
  EXPECT_EQ(one->family, 10);
  CPDFCSDeviceCMYK device;
  for (int v = 0; v < 256; ++v) {
    const double t = v / 255.0;
    const int m = v, y = static_cast<int>(std::lround(127.5 * t)), k = static_cast<int>(std::lround(63.75 * t));
    EXPECT_EQ(rgb_of(*cmyk, {v}), rgb_of(device, {0, m, y, k}));
    EXPECT_EQ(rgb_of(*one, {v}), rgb_of(*cmyk, {v}));
    expect_near(rgb_of(*lab, {v}), srgb_of_lab(100 - 60 * t, 60 * t, -30 * t, {0.9642, 1, 0.8249}), 1, "Lab");
    const int of_icc = srgb_encode(std::pow(t * t, 1.8)), of_cal = srgb_encode(std::pow(t, 3));
    expect_near(rgb_of(*icc, {v}), {of_icc, of_icc, of_icc}, 2, "gray profile");
    expect_near(rgb_of(*cal, {v}), {of_cal, of_cal, of_cal}, 2, "CalGray");
  }
  expect_runs_agree(*cmyk);
  PDF_COLOR first{};
  cmyk->get_default_color(first);
  EXPECT_EQ(first.val[0], 255);
}

TEST_F(Tint, DeviceNGoesThroughItsAlternate) {
  const auto two = space_of("[/DeviceN [/A /B] /DeviceRGB 3 0 R]", &xref);
  const auto icc = space_of("[/DeviceN [/A /None] [/ICCBased 6 0 R] 3 0 R <</Subtype /NChannel>>]", &xref);
  const auto five = space_of("[/DeviceN [/A /B /C /D /E] /DeviceGray 4 0 R]", &xref);
  ASSERT_TRUE(two && icc && five);
  EXPECT_EQ(five->comp_count, 5);
  const auto curve = [](double v) { return srgb_encode(std::pow(v / 255.0, 1.8)); };
  for (int a = 0; a < 256; a += 15)
    for (int b = 0; b < 256; b += 17) {
      const int both = static_cast<int>(std::lround(a * b / 255.0));
      EXPECT_EQ(rgb_of(*two, {a, b}), (Rgb{a, b, both}));
      expect_near(rgb_of(*icc, {a, b}), {curve(a), curve(b), curve(a * b / 255.0)}, 2, "ICC");
      const int gray = static_cast<int>(std::lround((a + b + 255 + 0 + 51) / 5.0));
      EXPECT_EQ(rgb_of(*five, {a, b, 255, 0, 51}), (Rgb{gray, gray, gray}));
    }
  for (CPDFCSBase* space : {two.get(), icc.get(), five.get()}) expect_runs_agree(*space);
}

TEST_F(Tint, NoneIsWhiteAndAllIsEveryInk) {
  const auto none = space_of("[/Separation /None /DeviceCMYK 1 0 R]", &xref);
  const auto all = space_of("[/Separation /All /DeviceCMYK 1 0 R]", &xref);
  const auto nones = space_of("[/DeviceN [/None /None] /DeviceRGB 3 0 R]", &xref);
  ASSERT_TRUE(none && all && nones);
  EXPECT_EQ(nones->comp_count, 2);
  for (int v = 0; v < 256; v += 5) {
    EXPECT_EQ(rgb_of(*none, {v}), (Rgb{255, 255, 255}));
    EXPECT_EQ(rgb_of(*nones, {v, 255}), (Rgb{255, 255, 255}));
    EXPECT_EQ(rgb_of(*all, {v}), (Rgb{255 - v, 255 - v, 255 - v}));
  }
  expect_runs_agree(*nones);
}

TEST_F(Tint, RefusesWhatDoesNotFit) {
  // No function, one of two inputs or of three outputs, alternates that are none, names that do not fit.
  for (const char* text : {"Separation /Spot /DeviceCMYK", "Separation /Spot /DeviceCMYK 3 0 R", "Separation /Spot /DeviceCMYK 2 0 R",
                           "Separation /Spot /Pattern 1 0 R", "Separation /Spot [/Indexed /DeviceGray 1 <00FF>] 1 0 R",
                           "Separation /Own 5 0 R 1 0 R", "DeviceN [] /DeviceRGB 3 0 R", "DeviceN /A /DeviceRGB 3 0 R",
                           "DeviceN [/A] /DeviceRGB 3 0 R", "DeviceN [/A/B/C/D/E/F/G/H/I/J/K/L/M/N/O/P/Q] /DeviceGray 4 0 R"}) {
    EXPECT_FALSE(space_of(std::string("[/") + text + "]", &xref)) << text;
  }
}

}  // namespace
