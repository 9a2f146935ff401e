// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <bit>

#include "pdf/image/layout_decoders.h"

// Pixels of 1, 2, 4 and 8 bits. Every value is converted once, into a table; the rows are unpacked
// and looked up.
//
//     bits   val[0] of entry k                                    colour key
//     1      Decode's two values; 0 and 255 (Indexed: 0 and 1)    on the finished bitmap
//     2      64 * k (Indexed: k)                                  on the finished bitmap
//     4      16 * k (Indexed: k); 2 or 4 components: split        table entries, then as above
//     8      k, or 255 - k by Decode; 4 components: split         table entries

using namespace image_decoding;

namespace {

/// The colour of a packed value of several components, the first of them in its top bits.
PDF_COLOR split_value(int value, int bits, int components) {
  PDF_COLOR color = {};
  const int component_bits = bits / components;
  for (int i = 0; i < components; ++i) {
    const auto sample = static_cast<unsigned>(value) >> (bits - (i + 1) * component_bits);
    color.val[i] = sample_to_byte(sample & ((1U << component_bits) - 1), component_bits);
  }
  return color;
}

/// Whether a table takes its values apart into components.
template <int Bits>
bool is_split(const CPDFImage& image) {
  const int components = image.cs->comp_count;
  if constexpr (Bits == 4) {
    return image.cs->family != family_indexed && (components == 2 || components == 4);
  } else if constexpr (Bits == 8) {
    return !is_inverted(image, 0) && components == 4;
  } else {
    return false;
  }
}

template <int Bits>
void fill_colors(const CPDFImage& image, _KXRGBA* table) {
  if (!is_split<Bits>(image)) return fill_table<Bits, ColorTarget>(image, table);
  for (int k = 0; k < 1 << Bits; ++k) {
    table[k] = ColorTarget::black;
    ColorTarget::convert(*image.cs, split_value(k, Bits, image.cs->comp_count), table[k]);
  }
}

/// Makes entries `lo` to `hi` transparent black, as far as the table has them.
void clear_entries(_KXRGBA* table, int entries, int lo, int hi) {
  for (int k = std::max(lo, 0); k <= std::min(hi, entries - 1); ++k) table[k] = {0, 0, 0, 0};
}

/// The colour key on the table of a 4- or 8-bit pixel: nothing where its bounds are the wrong way
/// round.
void apply_color_key(const CPDFImage& image, _KXRGBA* table, int entries) {
  if (has_color_key(image)) {
    clear_entries(table, entries, image.mask_min.val[0], image.mask_max.val[0]);
  }
}

/// The test that the 8-bit decoders make of each sample, in either order of the bounds. What it
/// keys out is a matter of the sample's value alone, so it is made on the table. A negative bound
/// is a large unsigned number there: no sample reaches it.
void apply_sample_key(const CPDFImage& image, _KXRGBA* table) {
  if (!has_color_key(image)) return;
  const auto [lo, hi] = std::minmax(image.mask_min.val[0], image.mask_max.val[0]);
  if (lo >= 0) clear_entries(table, 256, lo, hi);
}

template <int Bits>
void build_table(CPDFImage& image, _KXRGBA* table) {
  fill_colors<Bits>(image, table);
  if constexpr (Bits >= 4) apply_color_key(image, table, 1 << Bits);
}

template <int Bits, int Step>
int decode_palette(CPDFImage& image) {
  return decode_table<Bits, Step, ColorTarget>(image, [&](_KXRGBA* table) {
    build_table<Bits>(image, table);
    if constexpr (Bits == 8) apply_sample_key(image, table);
  });
}

}  // namespace

void CPDFImage::load_pals_from4(_KXRGBA* table) { build_table<4>(*this, table); }

void CPDFImage::load_pals_from8(unsigned int* table) {
  _KXRGBA colors[256];
  build_table<8>(*this, colors);
  for (int k = 0; k < 256; ++k) table[k] = std::bit_cast<unsigned int>(colors[k]);
}

int CPDFImage::load_bmp_from1() { return decode_palette<1, 1>(*this); }
int CPDFImage::load_bmp_from1_half() { return decode_palette<1, 2>(*this); }
int CPDFImage::load_bmp_from1_4in1() { return decode_palette<1, 4>(*this); }
int CPDFImage::load_bmp_from2() { return decode_palette<2, 1>(*this); }
int CPDFImage::load_bmp_from2_half() { return decode_palette<2, 2>(*this); }
int CPDFImage::load_bmp_from2_4in1() { return decode_palette<2, 4>(*this); }
int CPDFImage::load_bmp_from4() { return decode_palette<4, 1>(*this); }
int CPDFImage::load_bmp_from4_half() { return decode_palette<4, 2>(*this); }
int CPDFImage::load_bmp_from4_4in1() { return decode_palette<4, 4>(*this); }
int CPDFImage::load_bmp_from8() { return decode_palette<8, 1>(*this); }
int CPDFImage::load_bmp_from8_half() { return decode_palette<8, 2>(*this); }
int CPDFImage::load_bmp_from8_4in1() { return decode_palette<8, 4>(*this); }
