// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <new>

#include "pdf/image/layout.h"

// Opacity bitmaps, one byte a pixel: a mask's 0 bits are the opaque ones, a soft mask's 1 bits.
// Decode turns that round where its first entry is at least 1 of 255; nothing else of it counts.
// Both requests keep the stream when they could not begin, so that they can be tried again.

using namespace image_decoding;

namespace {

constexpr unsigned char clear_first[2] = {0, 255};   ///< Bit 0 is transparent.
constexpr unsigned char opaque_first[2] = {255, 0};  ///< Bit 0 is opaque.

bool is_reversed(const CPDFImage& image) {
  return image.has_decode != 0 && image.decode_min[0] >= 1;
}

bool make_bitmap(CPDFImage& image) {
  return store_bitmap(image.bmp_mask, new (std::nothrow) CKXBmp8(image.width, image.height));
}

void decode_bits(CPDFImage& image, const RowBuffer& buffer, const unsigned char (&opacity)[2]) {
  walk_rows<1>(*image.stream, *image.bmp_mask, image.height, buffer,
               [&](unsigned char* out, const unsigned char* row) {
                 unpack_row<1, 1>(out, row, image.width, opacity);
               });
}

void decode_complement(CPDFImage& image, const RowBuffer& buffer) {
  walk_rows<1>(*image.stream, *image.bmp_mask, image.height, buffer,
               [&](unsigned char* out, const unsigned char* row) {
                 rows().complement(out, row, static_cast<std::size_t>(image.width));
               });
}

}  // namespace

CKXBmp8* CPDFImage::get_mask() {
  if ((flags & image_mask) == 0 && bpc != 1) return nullptr;
  if (stream == nullptr) return bmp_mask;
  const RowBuffer buffer(packed_bytes(width, 1));
  if (buffer.data() == nullptr || !make_bitmap(*this)) return nullptr;
  decode_bits(*this, buffer, is_reversed(*this) ? clear_first : opaque_first);
  release_stream(*this);
  return bmp_mask;
}

CKXBmp8* CPDFImage::get_smask() {
  if ((bpc != 8 && bpc != 1) || cs == nullptr || cs->family != family_device_gray) return nullptr;
  if (stream == nullptr) return bmp_mask;
  if (!make_bitmap(*this)) return nullptr;

  const bool reversed = is_reversed(*this);
  if (bpc == 8 && !reversed) {
    read_rows(*stream, *bmp_mask, height);
  } else {
    const RowBuffer buffer(packed_bytes(width, bpc));
    if (buffer.data() == nullptr) {
      delete std::exchange(bmp_mask, nullptr);
      return nullptr;
    }
    if (bpc == 1) {
      decode_bits(*this, buffer, reversed ? opaque_first : clear_first);
    } else {
      decode_complement(*this, buffer);
    }
  }
  release_stream(*this);
  return bmp_mask;
}
