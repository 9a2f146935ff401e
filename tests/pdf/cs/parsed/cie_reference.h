// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>

#include "tests/pdf/cs/parsed/spaces.h"

// What a colour looks like, written down from the standards: XYZ under a white point, adapted by
// Bradford's cone scaling to D65, then IEC 61966-2-1.

namespace testing_support {

inline int srgb_encode(double v) {
  v = std::clamp(v, 0.0, 1.0);
  return static_cast<int>(std::lround(255 * (v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1 / 2.4) - 0.055)));
}

struct Xyz {
  double x, y, z;
};

/// The cones' answer, and XYZ from it by Cramer's rule.
inline Xyz cones(Xyz c) {
  return {0.8951 * c.x + 0.2664 * c.y - 0.1614 * c.z, -0.7502 * c.x + 1.7135 * c.y + 0.0367 * c.z,
          0.0389 * c.x - 0.0685 * c.y + 1.0296 * c.z};
}
inline Xyz from_cones(Xyz c) {
  const Xyz i = cones({1, 0, 0}), j = cones({0, 1, 0}), k = cones({0, 0, 1});
  const auto det = [](Xyz a, Xyz b, Xyz d) {
    return a.x * (b.y * d.z - b.z * d.y) - b.x * (a.y * d.z - a.z * d.y) + d.x * (a.y * b.z - a.z * b.y);
  };
  const double all = det(i, j, k);
  return {det(c, j, k) / all, det(i, c, k) / all, det(i, j, c) / all};
}

inline Rgb srgb_of(Xyz colour, Xyz white) {
  const Xyz from = cones(white), to = cones({0.95047, 1, 1.08883}), seen = cones(colour);
  const Xyz d65 = from_cones({seen.x * to.x / from.x, seen.y * to.y / from.y, seen.z * to.z / from.z});
  return {srgb_encode(3.2404542 * d65.x - 1.5371385 * d65.y - 0.4985314 * d65.z),
          srgb_encode(-0.9692660 * d65.x + 1.8760108 * d65.y + 0.0415560 * d65.z),
          srgb_encode(0.0556434 * d65.x - 0.2040259 * d65.y + 1.0572252 * d65.z)};
}

inline Rgb srgb_of_lab(double l, double a, double b, Xyz white) {
  const auto g = [](double x) { return x >= 6.0 / 29 ? x * x * x : 108.0 / 841 * (x - 4.0 / 29); };
  const double m = (l + 16) / 116;
  return srgb_of({white.x * g(m + a / 500), white.y * g(m), white.z * g(m - b / 200)}, white);
}

}  // namespace testing_support
