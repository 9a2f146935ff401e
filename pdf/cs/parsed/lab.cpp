// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/parsed/cie.h"
#include "pdf/cs/parsed/families.h"
#include "pdf/cs/parsed/makers.h"
#include "pdf/cs/parsed/parsed_space.h"
#include "pdf/obj/access.h"

// [/Lab dict], ISO 32000-1 8.6.5.4.

namespace {

using pdfbmp::Mat3;
using pdfbmp::Vec3;

// The standard's g: from the stage of a component to its part of the white point.
double g(double x) { return x >= 6.0 / 29 ? x * x * x : 108.0 / 841 * (x - 4.0 / 29); }

class CPDFCSLab final : public CPDFCSParsed {
 public:
  CPDFCSLab(const Vec3& white, CPDFCSRange a, CPDFCSRange b)
      : CPDFCSParsed(PDF_CS_LAB, 3), ranges_{{0, 100}, a, b} {
    to_linear_ = pdfbmp::linear_srgb_from_xyz(white);
    for (Vec3& row : to_linear_)
      for (std::size_t i = 0; i < 3; ++i) row[i] *= white[i];
    for (std::size_t i = 0; i < 256; ++i) {
      const auto byte = static_cast<double>(i);
      l_[i] = l_stage(ranges_[0].at(byte));
      a_[i] = ranges_[1].at(byte) / 500;
      b_[i] = ranges_[2].at(byte) / 200;
    }
  }

  CPDFCSRange range_of(int component) const override { return ranges_[component]; }

  void rgb_of(const double* v, _KXRGBA& rgba) const override {
    store(l_stage(v[0]), v[1] / 500, v[2] / 200, rgba);
  }

  void convert(_KXRGBA* dst, const unsigned char* src, int pixels) const override {
    for (int i = 0; i < pixels; ++i, src += 3) store(l_[src[0]], a_[src[1]], b_[src[2]], dst[i]);
  }

 private:
  static double l_stage(double l) { return (l + 16) / 116; }

  void store(double l, double a, double b, _KXRGBA& rgba) const {
    rgba = encode_(pdfbmp::multiply(to_linear_, Vec3{g(l + a), g(l), g(l - b)}));
  }

  CPDFCSRange ranges_[3];
  pdfbmp::SrgbEncoder encode_;
  Mat3 to_linear_;  // From parts of the white point.
  double l_[256], a_[256], b_[256];
};

}  // namespace

std::unique_ptr<CPDFCSBase> pdfbmp::make_lab(const CPDFArray& array, CPDFCSParseContext& context) {
  CPDFObjHolder temporary;
  const CPDFObj* object = context.resolve(item(array, 1), temporary);
  if (object == nullptr || object->dict() == nullptr) return nullptr;
  const CPDFDictionary* dict = object->dict();
  CPDFCSRange a{-100, 100}, b{-100, 100};
  const std::vector<double> range = context.numbers(find_key(dict, "Range"), 4);
  if (range.size() == 4 && range[0] <= range[1] && range[2] <= range[3]) {
    a = {range[0], range[1]};
    b = {range[2], range[3]};
  }
  return std::make_unique<CPDFCSLab>(white_point(dict, context), a, b);
}
