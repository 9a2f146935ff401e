// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

#include "tools/encoders/profiles.h"

namespace testing_support {

using encoders::gray_profile;
using encoders::rgb_profile;

/// Inks show as the sRGB colour (1 - ink) * (1 - k) * (1 - lift) + lift: `lift` is how far the darkest
/// colour is from black. The way back uses as much black ink as it can.
inline std::string cmyk_profile(double lift = 0, unsigned nodes = 6) {
  const auto to_rgb = [=](const std::array<double, 4>& inks) {
    std::array<double, 3> rgb;
    for (std::size_t i = 0; i < 3; ++i) rgb[i] = (1 - inks[i]) * (1 - inks[3]) * (1 - lift) + lift;
    return rgb;
  };
  const auto to_inks = [=](std::array<double, 3> light) {
    for (double& value : light) value = std::max(0.0, (value - lift) / (1 - lift));
    const double most = *std::max_element(light.begin(), light.end());
    std::array<double, 4> inks = {0, 0, 0, 1 - most};
    for (std::size_t i = 0; i < 3 && most > 0; ++i) inks[i] = 1 - light[i] / most;
    return inks;
  };
  return encoders::cmyk_profile(nodes, to_rgb, to_inks);
}

}  // namespace testing_support
