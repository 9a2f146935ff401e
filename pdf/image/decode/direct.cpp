// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/image/layout_decoders.h"

// Pixels of 24 and 32 bits and of every layout that has no table.

using namespace image_decoding;

namespace {

/// At reduced size RGB is copied without asking its space, whose calibration is not looked at.
template <int Step>
int decode_reduced24(CPDFImage& image) {
  const bool is_rgb = image.cs == nullptr || image.cs->family == family_device_rgb ||
                      image.cs->family == family_cal_rgb;
  if (!is_rgb) return decode_runs<Step, ColorTarget>(image, 3);
  const auto kept = static_cast<std::size_t>(kept_of<Step>(image.width));
  return decode_rows<Step, ColorTarget>(image, std::int64_t{3} * image.width,
                                        [&](_KXRGBA* out, const unsigned char* row) {
                                          rows().rgba_from_rgb[Step / 2](out, row, kept);
                                        });
}

}  // namespace

int CPDFImage::load_bmp_from24() { return decode_runs<1, ColorTarget>(*this, 3); }
int CPDFImage::load_bmp_from24_half() { return decode_reduced24<2>(*this); }
int CPDFImage::load_bmp_from24_4in1() { return decode_reduced24<4>(*this); }
int CPDFImage::load_bmp_from32() { return decode_four_bytes<1, ColorTarget>(*this); }
int CPDFImage::load_bmp_from32_half() { return decode_four_bytes<2, ColorTarget>(*this); }
int CPDFImage::load_bmp_from32_4in1() { return decode_four_bytes<4, ColorTarget>(*this); }
int CPDFImage::load_bmp_fromN(int count) { return decode_any<1, ColorTarget>(*this, count); }
int CPDFImage::load_bmp_fromN_half(int count) { return decode_any<2, ColorTarget>(*this, count); }
int CPDFImage::load_bmp_fromN_4in1(int count) { return decode_any<4, ColorTarget>(*this, count); }
