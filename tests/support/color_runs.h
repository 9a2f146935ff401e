// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "pdf/cs/color_space.h"

// Colours through a space's operations, one at a time and in runs.

namespace testing_support {

using Rgb = std::array<int, 3>;

inline PDF_COLOR color_of(const std::vector<int>& values) {
  PDF_COLOR color{};
  std::copy(values.begin(), values.end(), color.val);
  return color;
}

inline Rgb rgb_of(CPDFCSBase& space, const std::vector<int>& values) {
  _KXRGBA pixel{1, 2, 3, 4};
  space.get_rgb(color_of(values), pixel);
  EXPECT_EQ(pixel.a, 255);
  return {pixel.r, pixel.g, pixel.b};
}

inline void expect_near(const Rgb& got, const Rgb& want, int tolerance, const std::string& what) {
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_LE(std::abs(got[i] - want[i]), tolerance)
        << what << ": got " << got[0] << ' ' << got[1] << ' ' << got[2] << ", want " << want[0] << ' ' << want[1] << ' ' << want[2];
}

/// The four runs against the single-colour operations, over pseudo-random samples with repeats;
/// pixels beyond a run stay as they were. Reduced runs keep every second and fourth pixel.
inline void expect_runs_agree(CPDFCSBase& space) {
  const int n = space.comp_count;
  for (int pixels : {0, 1, 2, 3, 5, 64, 65, 300}) {
    std::vector<unsigned char> src;
    unsigned state = 7;
    for (int i = 0; i < pixels * n; ++i) {
      state = state * 1664525U + 1013904223U;
      src.push_back(static_cast<unsigned char>(i % 7 == 0 ? 255 : state >> 24));
    }
    const auto colour = [&](int pixel) {
      PDF_COLOR color{};
      for (int c = 0; c < n; ++c) color.val[c] = src[static_cast<std::size_t>(pixel * n + c)];
      return color;
    };
    using Batch = void (CPDFCSBase::*)(_KXRGBA*, const unsigned char*, int);
    for (const auto& [batch, step] :
         {std::pair<Batch, int>{&CPDFCSBase::batch_rgb, 1}, {&CPDFCSBase::batch_rgb2, 2}, {&CPDFCSBase::batch_rgb4, 4}}) {
      const auto kept = static_cast<std::size_t>((pixels + step - 1) / step);
      std::vector<_KXRGBA> out(kept + 1, _KXRGBA{9, 9, 9, 9});
      (space.*batch)(out.data(), src.data(), pixels * n);
      EXPECT_EQ(out[kept].a, 9);
      for (std::size_t i = 0; i < kept; ++i) {
        _KXRGBA want{};
        space.get_rgb(colour(static_cast<int>(i) * step), want);
        ASSERT_TRUE(out[i].r == want.r && out[i].g == want.g && out[i].b == want.b && out[i].a == 255)
            << "pixel " << i << " of " << pixels << ", step " << step;
      }
    }
    std::vector<unsigned char> gray(static_cast<std::size_t>(pixels) * 2 + 1, 9);
    space.batch_gray(gray.data(), src.data(), pixels * n);
    EXPECT_EQ(gray.back(), 9);
    for (int i = 0; i < pixels; ++i) {
      unsigned char want = 0;
      space.get_gray(colour(i), want);
      const auto at = static_cast<std::size_t>(i) * 2;
      ASSERT_EQ(gray[at], want);
      ASSERT_EQ(gray[at + 1], 255);
    }
  }
}

}  // namespace testing_support
