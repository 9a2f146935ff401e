// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "pdf/cs/device_rgb.h"
#include "pdf/cs/parsed/cie.h"
#include "pdf/cs/parsed/families.h"
#include "pdf/cs/parsed/makers.h"
#include "pdf/cs/parsed/parsed_space.h"
#include "pdf/obj/access.h"

// [/CalRGB dict], ISO 32000-1 8.6.5.3: each component to the power of its Gamma, then Matrix gives
// X, Y, Z. Both steps of the way to linear sRGB are one matrix.

namespace {

using pdfbmp::Mat3;
using pdfbmp::Vec3;

class CPDFCSCalRGB final : public CPDFCSParsed {
 public:
  CPDFCSCalRGB(const Vec3& gamma, const Mat3& to_linear)
      : CPDFCSParsed(PDF_CS_CAL_RGB, 3), gamma_(gamma), to_linear_(to_linear) {
    for (std::size_t c = 0; c < 3; ++c)
      for (std::size_t i = 0; i < 256; ++i)
        curve_[c][i] = std::pow(static_cast<double>(i) / 255, gamma[c]);
  }

  void rgb_of(const double* v, _KXRGBA& rgba) const override {
    store({std::pow(v[0], gamma_[0]), std::pow(v[1], gamma_[1]), std::pow(v[2], gamma_[2])}, rgba);
  }

  void convert(_KXRGBA* dst, const unsigned char* src, int pixels) const override {
    for (int i = 0; i < pixels; ++i, src += 3)
      store({curve_[0][src[0]], curve_[1][src[1]], curve_[2][src[2]]}, dst[i]);
  }

 private:
  void store(const Vec3& abc, _KXRGBA& rgba) const {
    rgba = encode_(pdfbmp::multiply(to_linear_, abc));
  }

  Vec3 gamma_;
  pdfbmp::SrgbEncoder encode_;
  Mat3 to_linear_;
  double curve_[3][256];
};

}  // namespace

std::unique_ptr<CPDFCSBase> pdfbmp::make_cal_rgb(const CPDFArray& array,
                                                 CPDFCSParseContext& context) {
  CPDFObjHolder temporary;
  const CPDFObj* object = context.resolve(item(array, 1), temporary);
  if (object == nullptr || object->dict() == nullptr) return nullptr;
  const CPDFDictionary* dict = object->dict();

  Vec3 gamma = {1, 1, 1};
  const std::vector<double> gammas = context.numbers(find_key(dict, "Gamma"), 3);
  if (gammas.size() == 3) std::copy(gammas.begin(), gammas.end(), gamma.begin());
  for (double& g : gamma)
    if (!(g > 0)) g = 1;

  // Matrix lists X, Y, Z of A, then of B, then of C: the columns.
  Mat3 matrix = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  const std::vector<double> m = context.numbers(find_key(dict, "Matrix"), 9);
  if (m.size() == 9)
    for (std::size_t i = 0; i < 9; ++i) matrix[i % 3][i / 3] = m[i];

  auto space = std::make_unique<CPDFCSCalRGB>(
      gamma, multiply(linear_srgb_from_xyz(white_point(dict, context)), matrix));
  const auto convert = [&](_KXRGBA* dst, const unsigned char* src, int pixels) {
    space->convert(dst, src, pixels);
  };
  if (!is_srgb(convert)) return space;
  auto plain = std::make_unique<CPDFCSDeviceRGB>();
  plain->family = PDF_CS_CAL_RGB;
  return plain;
}
