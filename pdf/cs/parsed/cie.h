// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "kx/rgba.h"

class CPDFCSParseContext;
class CPDFDictionary;

// From CIE tristimulus values to sRGB (IEC 61966-2-1), the common ground of CalGray, CalRGB and
// Lab. The white point of a space becomes the white of sRGB: colours are adapted by the Bradford
// transform, which is what relative colorimetric rendering through an ICC profile would do.

namespace pdfbmp {

using Vec3 = std::array<double, 3>;
using Mat3 = std::array<Vec3, 3>;  ///< Rows.

Vec3 multiply(const Mat3& m, const Vec3& v);
Mat3 multiply(const Mat3& a, const Mat3& b);

/// From XYZ under the white point `white` (Y is 1) to linear sRGB.
Mat3 linear_srgb_from_xyz(const Vec3& white);

/// The 8-bit sRGB value of a linear one; outside 0..1 the nearest inside. By a table that the first
/// encoder of the process makes: off by at most a tenth of a level before rounding.
class SrgbEncoder {
 public:
  SrgbEncoder();

  unsigned char operator()(double linear) const {
    if (!(linear > 0)) return 0;
    if (linear >= 1) return 255;
    return curve_[static_cast<int>(linear * steps + 0.5)];
  }

  _KXRGBA operator()(const Vec3& linear) const {
    return {(*this)(linear[2]), (*this)(linear[1]), (*this)(linear[0]), 255};
  }

 private:
  static constexpr int steps = 1 << 14;  // The curve rises by 13 levels in a 255th at its steepest.
  const unsigned char* curve_;
};

/// WhitePoint of a CIE-based space's dictionary: D65 where it is missing or no white point.
Vec3 white_point(const CPDFDictionary* dict, const CPDFCSParseContext& context);

/// Whether a conversion of 8-bit R, G, B is sRGB's own to within one level: `convert(dst, src, n)`
/// is asked for a grid of colours and the gray ramp.
template <class Convert>
bool is_srgb(Convert convert) {
  constexpr int levels[] = {0, 13, 51, 90, 128, 167, 204, 230, 255};
  const auto near = [&](int r, int g, int b) {
    const unsigned char src[3] = {static_cast<unsigned char>(r), static_cast<unsigned char>(g),
                                  static_cast<unsigned char>(b)};
    _KXRGBA to{};
    convert(&to, src, 1);
    const auto off = [](int a, int c) { return a - c > 1 || c - a > 1; };
    return !off(to.r, r) && !off(to.g, g) && !off(to.b, b);
  };
  for (int gray = 0; gray < 256; ++gray)
    if (!near(gray, gray, gray)) return false;
  for (int r : levels)
    for (int g : levels)
      for (int b : levels)
        if (!near(r, g, b)) return false;
  return true;
}

}  // namespace pdfbmp
