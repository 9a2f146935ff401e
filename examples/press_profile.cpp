// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "examples/press_profile.h"

#include <algorithm>

#include "tools/encoders/profiles.h"

namespace {

// What each ink lets through of red, green and blue, and the paper.
constexpr double inks[4][3] = {
    {0.22, 0.58, 0.74}, {0.76, 0.27, 0.45}, {0.93, 0.85, 0.30}, {0.20, 0.19, 0.19}};
constexpr double paper[3] = {0.90, 0.88, 0.83};

// Inks that multiply, with a little dot gain.
std::array<double, 3> seen(const std::array<double, 4>& amounts) {
  std::array<double, 3> rgb;
  for (std::size_t channel = 0; channel < 3; ++channel) {
    double light = paper[channel];
    for (std::size_t ink = 0; ink < 4; ++ink) {
      const double grown = amounts[ink] + 0.6 * amounts[ink] * (1 - amounts[ink]);
      light *= 1 - std::min(grown, 1.0) * (1 - inks[ink][channel]);
    }
    rgb[channel] = light;
  }
  return rgb;
}

}  // namespace

std::string make_press_profile() { return encoders::cmyk_profile(7, seen); }
