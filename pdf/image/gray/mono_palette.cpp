// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/image/gray/mono_palette.h"

#include "pdf/image/layout.h"

using namespace image_decoding;

namespace {

/// Step i of 255 from one channel value to another, truncated.
unsigned char blend(unsigned char first, unsigned char last, int i) {
  return static_cast<unsigned char>(((255 - i) * first + i * last) / 255);
}

_KXRGBA end_color(const CPDFImage& image, int bit) {
  PDF_COLOR color = {};
  color.val[0] = table_value<1>(image, bit);
  _KXRGBA pixel = {0, 0, 0, 255};
  image.cs->get_rgb(color, pixel);
  return pixel;
}

}  // namespace

void image_decoding::fill_mono_palette(const CPDFImage& image, _KXRGBA* palette) {
  _KXRGBA first = {0, 0, 0, 255};
  _KXRGBA last = {255, 255, 255, 255};
  if (image.bpc == 1) {
    first = end_color(image, 0);
    last = end_color(image, 1);
  } else if (is_inverted(image, 0)) {
    std::swap(first, last);
  }
  for (int i = 0; i < 256; ++i) {
    palette[i] = {blend(first.b, last.b, i), blend(first.g, last.g, i), blend(first.r, last.r, i),
                  255};
  }
}
