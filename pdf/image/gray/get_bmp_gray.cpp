// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <new>

#include "pdf/image/layout_decoders.h"

// The gray bitmap: the colour decoders' layouts once more, at full size. Pixels of 2, 4 and 8 bits
// are not taken apart into components here.

using namespace image_decoding;

namespace {

template <int Bits>
int decode_gray_table(CPDFImage& image) {
  return decode_table<Bits, 1, GrayTarget>(
      image, [&](GrayTarget::Pixel* table) { fill_table<Bits, GrayTarget>(image, table); });
}

struct Layout {
  int bits;  ///< Of one pixel.
  int (CPDFImage::*decode)();
};

constexpr Layout layouts[] = {
    {1, &CPDFImage::load_bmpg_from1},   {2, &CPDFImage::load_bmpg_from2},
    {4, &CPDFImage::load_bmpg_from4},   {8, &CPDFImage::load_bmpg_from8},
    {24, &CPDFImage::load_bmpg_from24}, {32, &CPDFImage::load_bmpg_from32},
};

int decode(CPDFImage& image) {
  if (const Layout* layout = find_layout(layouts, image)) return (image.*layout->decode)();
  return image.load_bmpg_fromN(image.cs->comp_count);
}

}  // namespace

int CPDFImage::load_bmpg_from1() { return decode_gray_table<1>(*this); }
int CPDFImage::load_bmpg_from2() { return decode_gray_table<2>(*this); }
int CPDFImage::load_bmpg_from4() { return decode_gray_table<4>(*this); }
int CPDFImage::load_bmpg_from8() { return decode_gray_table<8>(*this); }
int CPDFImage::load_bmpg_from24() { return decode_runs<1, GrayTarget>(*this, 3); }
int CPDFImage::load_bmpg_from32() { return decode_four_bytes<1, GrayTarget>(*this); }
int CPDFImage::load_bmpg_fromN(int count) { return decode_any<1, GrayTarget>(*this, count); }

CKXBmpGray* CPDFImage::get_bmp_gray() {
  if (stream == nullptr) return bmp_gray;
  if ((flags & (image_mask | smask_in_data)) != 0 || cs == nullptr) return nullptr;

  auto* made = new (std::nothrow) CKXBmpGray;
  if (made != nullptr) made->create(width, height);
  if (!store_bitmap(bmp_gray, made)) {
    release_stream(*this);
    return nullptr;
  }
  decode(*this);  // What could not be decoded at all stays transparent.
  release_stream(*this);
  release_color_space(*this);
  return bmp_gray;
}
