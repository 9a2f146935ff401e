// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/parsed/cie.h"

#include <cmath>
#include <vector>

#include "pdf/cs/parsed/parse_context.h"
#include "pdf/obj/access.h"

namespace {

using pdfbmp::Mat3;
using pdfbmp::Vec3;

constexpr Vec3 d65 = {0.95047, 1, 1.08883};

// The Bradford cone response and its inverse (ICC.1:2010, Annex E).
constexpr Mat3 bradford = {
    {{0.8951, 0.2664, -0.1614}, {-0.7502, 1.7135, 0.0367}, {0.0389, -0.0685, 1.0296}}};
constexpr Mat3 bradford_inverse = {{{0.9869929, -0.1470543, 0.1599627},
                                    {0.4323053, 0.5183603, 0.0492912},
                                    {-0.0085287, 0.0400428, 0.9684867}}};

// XYZ under D65 to linear sRGB: the inverse of the primaries of ITU-R BT.709.
constexpr Mat3 srgb_from_d65 = {{{3.2404542, -1.5371385, -0.4985314},
                                 {-0.9692660, 1.8760108, 0.0415560},
                                 {0.0556434, -0.2040259, 1.0572252}}};

}  // namespace

Vec3 pdfbmp::multiply(const Mat3& m, const Vec3& v) {
  Vec3 r{};
  for (std::size_t i = 0; i < 3; ++i) r[i] = m[i][0] * v[0] + m[i][1] * v[1] + m[i][2] * v[2];
  return r;
}

Mat3 pdfbmp::multiply(const Mat3& a, const Mat3& b) {
  Mat3 r{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      for (std::size_t k = 0; k < 3; ++k) r[i][j] += a[i][k] * b[k][j];
  return r;
}

Mat3 pdfbmp::linear_srgb_from_xyz(const Vec3& white) {
  const Vec3 from = multiply(bradford, white), to = multiply(bradford, d65);
  Mat3 scale{};
  for (std::size_t i = 0; i < 3; ++i) scale[i][i] = to[i] / from[i];
  return multiply(srgb_from_d65, multiply(bradford_inverse, multiply(scale, bradford)));
}

pdfbmp::SrgbEncoder::SrgbEncoder() {
  static const std::vector<unsigned char> curve = [] {
    std::vector<unsigned char> bytes;
    for (int i = 0; i <= steps; ++i) {
      const double v = static_cast<double>(i) / steps;
      const double s = v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1 / 2.4) - 0.055;
      bytes.push_back(static_cast<unsigned char>(std::lround(255 * s)));
    }
    return bytes;
  }();
  curve_ = curve.data();
}

Vec3 pdfbmp::white_point(const CPDFDictionary* dict, const CPDFCSParseContext& context) {
  const std::vector<double> w = context.numbers(find_key(dict, "WhitePoint"), 3);
  // Y is 1 by the standard. Far from white the adaptation has no meaning.
  const auto sound = [](double v) { return v > 0.2 && v < 5; };
  if (w.size() != 3 || !sound(w[0]) || !sound(w[1]) || !sound(w[2])) return d65;
  const Vec3 white = {w[0] / w[1], 1, w[2] / w[1]};
  for (double cone : multiply(bradford, white))
    if (!(cone > 0.05)) return d65;
  return white;
}
