// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "pdf/image/layout.h"

// The decoders of every layout, once for both bitmaps that go through the colour space. What tells
// the two apart is the target: the bitmap, its pixel, and the operations that make one.

namespace image_decoding {

/// Pixels of the colour bitmap.
struct ColorTarget {
  using Pixel = _KXRGBA;
  static constexpr Pixel black = {0, 0, 0, 255};

  static CKXBmp* bitmap(const CPDFImage& image) { return image.bmp; }

  static void convert(CPDFCSBase& cs, const PDF_COLOR& color, Pixel& pixel) {
    cs.get_rgb(color, pixel);
    pixel.a = 255;
  }

  template <int Step>
  static void convert_run(CPDFCSBase& cs, Pixel* out, const unsigned char* row, int nbytes) {
    if constexpr (Step == 1) {
      cs.batch_rgb(out, row, nbytes);
    } else if constexpr (Step == 2) {
      cs.batch_rgb2(out, row, nbytes);
    } else {
      static_assert(Step == 4);
      cs.batch_rgb4(out, row, nbytes);
    }
  }
};

/// Pixels of the gray bitmap, which is never reduced.
struct GrayTarget {
  struct Pixel {
    unsigned char gray, alpha;
  };
  static_assert(sizeof(Pixel) == 2);
  static constexpr Pixel black = {0, 255};

  static CKXBmp* bitmap(const CPDFImage& image) { return image.bmp_gray; }

  static void convert(CPDFCSBase& cs, const PDF_COLOR& color, Pixel& pixel) {
    cs.get_gray(color, pixel.gray);
    pixel.alpha = 255;
  }

  template <int Step>
  static void convert_run(CPDFCSBase& cs, Pixel* out, const unsigned char* row, int nbytes) {
    static_assert(Step == 1);
    cs.batch_gray(&out->gray, row, nbytes);
  }
};

/// Takes the row buffer and walks the rows with `convert(out, row)`. 0 where there is none to be
/// had, or nothing to read from or write to.
template <int Step, class Target, class Convert>
int decode_rows(CPDFImage& image, std::int64_t row_bytes, Convert convert) {
  CKXBmp* bmp = Target::bitmap(image);
  if (image.stream == nullptr || bmp == nullptr) return 0;
  const RowBuffer buffer(row_bytes);
  if (buffer.data() == nullptr) return 0;
  walk_rows<Step>(*image.stream, *bmp, image.height, buffer,
                  [&](unsigned char* out, const unsigned char* row) {
                    convert(reinterpret_cast<typename Target::Pixel*>(out), row);
                  });
  return 1;
}

/// A table's entries from one-component values: `val[0]` of entry k as table_value() has it.
template <int Bits, class Target>
void fill_table(const CPDFImage& image, typename Target::Pixel* table) {
  PDF_COLOR color = {};
  for (int k = 0; k < 1 << Bits; ++k) {
    color.val[0] = table_value<Bits>(image, k);
    table[k] = Target::black;
    Target::convert(*image.cs, color, table[k]);
  }
}

/// Pixels of `Bits` bits, looked up in a table of all their values that `fill(table)` makes.
template <int Bits, int Step, class Target, class Fill>
int decode_table(CPDFImage& image, Fill fill) {
  if (image.cs == nullptr) return 0;
  typename Target::Pixel table[1 << Bits];
  fill(table);
  return decode_rows<Step, Target>(image, packed_bytes(image.width, Bits),
                                   [&](typename Target::Pixel* out, const unsigned char* row) {
                                     unpack_row<Bits, Step>(out, row, image.width, table);
                                   });
}

/// Rows of `bytes_per_pixel` bytes a pixel, a row at a time through the space's run operations.
template <int Step, class Target>
int decode_runs(CPDFImage& image, std::int64_t bytes_per_pixel) {
  if (!is_usable(image.cs)) return 0;
  const int nbytes = run_bytes(*image.cs, image.width, bytes_per_pixel);
  return decode_rows<Step, Target>(image, image.width * bytes_per_pixel,
                                   [&](typename Target::Pixel* out, const unsigned char* row) {
                                     Target::template convert_run<Step>(*image.cs, out, row,
                                                                        nbytes);
                                   });
}

/// Four bytes a pixel. With a Decode array each component is inverted as its range tells, and
/// pixels are converted one by one.
template <int Step, class Target>
int decode_four_bytes(CPDFImage& image) {
  if (image.has_decode == 0) return decode_runs<Step, Target>(image, 4);
  if (!is_usable(image.cs)) return 0;
  return decode_rows<Step, Target>(image, std::int64_t{4} * image.width,
                                   [&](typename Target::Pixel* out, const unsigned char* row) {
                                     PDF_COLOR color = {};
                                     for (int i = 0; i < kept_of<Step>(image.width); ++i) {
                                       read_decoded_bytes(image, row + std::ptrdiff_t{i} * Step * 4,
                                                          color);
                                       Target::convert(*image.cs, color, out[i]);
                                     }
                                   });
}

/// Any layout: bytes by runs, other depths taken apart and converted pixel by pixel.
template <int Step, class Target>
int decode_any(CPDFImage& image, int components) {
  if (!is_usable(image.cs) || !is_readable(image.bpc, components)) return 0;
  if (image.bpc == 8) return decode_runs<Step, Target>(image, components);
  const std::int64_t row_bytes = packed_bytes(image.width, std::int64_t{image.bpc} * components);
  return decode_rows<Step, Target>(image, row_bytes,
                                   [&](typename Target::Pixel* out, const unsigned char* row) {
                                     BitReader bits(row, row_bytes, image.bpc);
                                     PDF_COLOR color = {};
                                     for (int i = 0; i < kept_of<Step>(image.width); ++i) {
                                       read_color(bits, components, image.bpc, color);
                                       Target::convert(*image.cs, color, out[i]);
                                       bits.skip(std::int64_t{Step - 1} * components);
                                     }
                                   });
}

/// The table row of the image's pixel layout, null for those of the generic decoder: components
/// above 8 bits, and pixels of a size that no row has.
template <class Layout, std::size_t Count>
const Layout* find_layout(const Layout (&layouts)[Count], const CPDFImage& image) {
  if (image.bpc > 8) return nullptr;
  for (const Layout& layout : layouts) {
    if (layout.bits == pixel_bits(image)) return &layout;
  }
  return nullptr;
}

}  // namespace image_decoding
