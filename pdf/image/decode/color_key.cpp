// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/image/decode/color_key.h"

#include <algorithm>
#include <cstddef>

namespace {

bool is_between(unsigned char value, unsigned char lo, unsigned char hi) {
  return value >= lo && value <= hi;
}

}  // namespace

void image_decoding::clear_color_key(CKXBmp32& bmp, CPDFCSBase& cs, const PDF_COLOR& key_min,
                                     const PDF_COLOR& key_max) {
  _KXRGBA lo = {0, 0, 0, 255};
  _KXRGBA hi = {0, 0, 0, 255};
  cs.get_rgb(key_min, lo);
  cs.get_rgb(key_max, hi);
  // A conversion may turn the order of a channel round.
  if (lo.b > hi.b) std::swap(lo.b, hi.b);
  if (lo.g > hi.g) std::swap(lo.g, hi.g);
  if (lo.r > hi.r) std::swap(lo.r, hi.r);

  for (int y = 0; y < bmp.height; ++y) {
    auto* pixel = reinterpret_cast<_KXRGBA*>(bmp.pixels + std::ptrdiff_t{y} * bmp.stride);
    for (const _KXRGBA* end = pixel + bmp.stride / 4; pixel < end; ++pixel) {
      if (is_between(pixel->b, lo.b, hi.b) && is_between(pixel->g, lo.g, hi.g) &&
          is_between(pixel->r, lo.r, hi.r)) {
        pixel->a = 0;
      }
    }
  }
}
