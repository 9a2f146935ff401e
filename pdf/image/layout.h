// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>

#include "pdf/image/bit_reader.h"
#include "pdf/image/image.h"
#include "pdf/image/unpack.h"

namespace image_decoding {

inline constexpr int family_device_gray = 1;
inline constexpr int family_cal_gray = 2;
inline constexpr int family_device_rgb = 3;
inline constexpr int family_cal_rgb = 4;
inline constexpr int family_indexed = 8;

inline constexpr int max_components = 16;  ///< What a PDF_COLOR holds.
inline constexpr int max_bits = 16;        ///< Of one component.

/// Samples of the picture; any two 32-bit sizes fit.
inline std::int64_t pixel_count(const CPDFImage& image) {
  return std::int64_t{image.width} * image.height;
}

/// Bits of one pixel, the key of the decoder tables.
inline std::int64_t pixel_bits(const CPDFImage& image) {
  return std::int64_t{image.bpc} * image.cs->comp_count;
}

/// Whether component i of Decode runs from high to low.
inline bool is_inverted(const CPDFImage& image, int i) {
  return image.has_decode != 0 && image.decode_min[i] > image.decode_max[i];
}

/// Whether the image carries a colour key, in `mask_min` and `mask_max`.
inline bool has_color_key(const CPDFImage& image) {
  return image.has_mask != 0 && image.mask == nullptr;
}

/// The bytes of a run of `pixels` pixels of `bytes_per_pixel` that the colour space may be given:
/// whole pixels of its own component count, and no more of them than the bitmap's row holds.
inline int run_bytes(const CPDFCSBase& cs, int pixels, std::int64_t bytes_per_pixel) {
  const std::int64_t own = std::min(pixels * bytes_per_pixel / cs.comp_count, std::int64_t{pixels});
  return static_cast<int>(own * cs.comp_count);
}

/// Whether the space's colours fit a PDF_COLOR and its runs can be counted.
inline bool is_usable(const CPDFCSBase* cs) {
  return cs != nullptr && cs->comp_count >= 1 && cs->comp_count <= max_components;
}

/// Whether pixels of that many components and bits each can be taken apart.
constexpr bool is_readable(int bpc, int components) {
  return components >= 1 && components <= max_components && bpc >= 1 && bpc <= max_bits;
}

/// What `val[0]` is for sample k of a one-component pixel of `Bits` bits, as the colour and gray
/// tables agree. One bit takes the ends of the range, or of Decode; the scales of 2 and 4 bits are
/// shifts, so that their tops are 192 and 240; of 8 bits only Decode's direction counts.
template <int Bits>
int table_value(const CPDFImage& image, int k) {
  const bool indexed = image.cs->family == family_indexed;
  if constexpr (Bits == 1) {
    if (image.has_decode != 0) return k == 0 ? image.decode_min[0] : image.decode_max[0];
    return indexed ? k : k * 255;
  } else if constexpr (Bits == 8) {
    return is_inverted(image, 0) ? 255 - k : k;
  } else {
    return indexed ? k : k << (8 - Bits);
  }
}

/// The components of one pixel of a layout of any depth. `color.val` beyond `components` stays 0.
inline void read_color(BitReader& bits, int components, int bpc, PDF_COLOR& color) {
  for (int i = 0; i < components; ++i) color.val[i] = sample_to_byte(bits.next(), bpc);
}

/// The four bytes of a 32-bit pixel, each inverted where its Decode runs from high to low.
inline void read_decoded_bytes(const CPDFImage& image, const unsigned char* pixel,
                               PDF_COLOR& color) {
  for (int i = 0; i < 4; ++i) color.val[i] = is_inverted(image, i) ? 255 - pixel[i] : pixel[i];
}

/// Drops the stream that has been read.
inline void release_stream(CPDFImage& image) { delete std::exchange(image.stream, nullptr); }

/// Drops a colour space that the image owns.
inline void release_color_space(CPDFImage& image) {
  if (image.cs_borrowed == 0) delete std::exchange(image.cs, nullptr);
}

/// Whether a bitmap that was just made can be filled.
inline bool is_made(const CKXBmp* bmp) {
  return bmp != nullptr && bmp->width >= 1 && bmp->height >= 1 && bmp->pixels != nullptr;
}

/// Stores a new bitmap in its cache. False, with the cache null, where it could not be made.
template <class Bmp>
bool store_bitmap(Bmp*& cache, Bmp* made) {
  delete std::exchange(cache, is_made(made) ? made : nullptr);
  if (cache == nullptr) delete made;
  return cache != nullptr;
}

}  // namespace image_decoding
