// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
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

/// The four runs against the single-colour operations, over pseudo-random samples with repeats, also
/// in place, where what a pixel writes is what the next ones read; bytes beyond a run stay as they
/// were. Reduced runs keep every second and fourth pixel.
inline void expect_runs_agree(CPDFCSBase& space) {
  const auto n = static_cast<std::size_t>(space.comp_count);
  for (const int pixels : {-1, 0, 1, 2, 3, 5, 64, 65, 300}) {
    const std::size_t count = pixels < 0 ? 0 : static_cast<std::size_t>(pixels);
    const int nbytes = pixels * space.comp_count;
    std::vector<unsigned char> src;
    unsigned state = 7;
    for (std::size_t i = 0; i < count * n; ++i) {
      state = state * 1664525U + 1013904223U;
      src.push_back(static_cast<unsigned char>(i % 7 == 0 ? 255 : state >> 24));
    }
    const auto color_at = [n](const std::vector<unsigned char>& samples, std::size_t pixel) {
      PDF_COLOR color{};
      for (std::size_t c = 0; c < n; ++c) color.val[c] = samples[pixel * n + c];
      return color;
    };
    const auto batches = {&CPDFCSBase::batch_rgb, &CPDFCSBase::batch_rgb2, &CPDFCSBase::batch_rgb4};
    std::size_t step = 1;
    for (const auto batch : batches) {
      for (const bool in_place : {false, true}) {
        const std::size_t kept = (count + step - 1) / step;
        std::vector<unsigned char> got(std::max(kept * 4 + 4, src.size()), 9);
        if (in_place) std::copy(src.begin(), src.end(), got.begin());
        std::vector<unsigned char> want = got;
        for (std::size_t i = 0; i < kept; ++i) {
          _KXRGBA pixel{};
          space.get_rgb(color_at(in_place ? want : src, i * step), pixel);
          const unsigned char bytes[] = {pixel.b, pixel.g, pixel.r, 255};
          std::copy(bytes, bytes + 4, want.begin() + static_cast<std::ptrdiff_t>(i * 4));
        }
        (space.*batch)(reinterpret_cast<_KXRGBA*>(got.data()), in_place ? got.data() : src.data(), nbytes);
        ASSERT_EQ(got, want) << pixels << " pixels, step " << step << (in_place ? ", in place" : "");
      }
      step *= 2;
    }
    std::vector<unsigned char> gray(count * 2 + 1, 9);
    space.batch_gray(gray.data(), src.data(), nbytes);
    EXPECT_EQ(gray.back(), 9);
    for (std::size_t i = 0; i < count; ++i) {
      unsigned char want = 0;
      space.get_gray(color_at(src, i), want);
      ASSERT_TRUE(gray[2 * i] == want && gray[2 * i + 1] == 255) << i;
    }
  }
}

}  // namespace testing_support
