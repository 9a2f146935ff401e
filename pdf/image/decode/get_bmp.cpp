// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <new>

#include "pdf/image/decode/color_key.h"
#include "pdf/image/decode/scale.h"
#include "pdf/image/layout_decoders.h"

using namespace image_decoding;

namespace {

/// The decoders of one pixel layout, by scale: full, half, quarter.
struct Layout {
  int bits;  ///< Of one pixel.
  int (CPDFImage::*at[3])();
};

constexpr Layout layouts[] = {
    {1,
     {&CPDFImage::load_bmp_from1, &CPDFImage::load_bmp_from1_half,
      &CPDFImage::load_bmp_from1_4in1}},
    {2,
     {&CPDFImage::load_bmp_from2, &CPDFImage::load_bmp_from2_half,
      &CPDFImage::load_bmp_from2_4in1}},
    {4,
     {&CPDFImage::load_bmp_from4, &CPDFImage::load_bmp_from4_half,
      &CPDFImage::load_bmp_from4_4in1}},
    {8,
     {&CPDFImage::load_bmp_from8, &CPDFImage::load_bmp_from8_half,
      &CPDFImage::load_bmp_from8_4in1}},
    {24,
     {&CPDFImage::load_bmp_from24, &CPDFImage::load_bmp_from24_half,
      &CPDFImage::load_bmp_from24_4in1}},
    {32,
     {&CPDFImage::load_bmp_from32, &CPDFImage::load_bmp_from32_half,
      &CPDFImage::load_bmp_from32_4in1}},
};

/// All other layouts, and every component above 8 bits.
constexpr int (CPDFImage::*any_layout[3])(int) = {
    &CPDFImage::load_bmp_fromN, &CPDFImage::load_bmp_fromN_half, &CPDFImage::load_bmp_fromN_4in1};

int decode(CPDFImage& image, Scale scale) {
  const auto at = static_cast<std::size_t>(scale);
  if (const Layout* layout = find_layout(layouts, image)) return (image.*layout->at[at])();
  return (image.*any_layout[at])(image.cs->comp_count);
}

void merge_jpx_alpha(CPDFImage& image, Scale scale) {
  switch (scale) {
    case Scale::full:
      image.load_jpx_alpha();
      break;
    case Scale::half:
      image.load_jpx_alpha_half();
      break;
    case Scale::quarter:
      image.load_jpx_alpha_4in1();
      break;
  }
}

}  // namespace

CKXBmp32* CPDFImage::get_bmp() {
  if (stream == nullptr) return bmp;
  if ((flags & (image_mask | smask_in_data)) != 0 || cs == nullptr) return nullptr;

  const Scale scale = scale_of(pixel_count(*this), (flags & no_quarter) != 0);
  auto* made = new (std::nothrow) CKXBmp32(scaled(width, scale), scaled(height, scale));
  if (!store_bitmap(bmp, made)) {
    release_stream(*this);
    return nullptr;
  }

  const int decoded = decode(*this, scale);
  merge_jpx_alpha(*this, scale);
  release_stream(*this);
  if (decoded == 0) delete std::exchange(bmp, nullptr);

  // The 8-bit decoders have compared the samples themselves.
  if (has_color_key(*this) && bmp != nullptr && pixel_bits(*this) != 8) {
    clear_color_key(*bmp, *cs, mask_min, mask_max);
  }
  release_color_space(*this);
  return bmp;
}
