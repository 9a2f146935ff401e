// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <new>

#include "pdf/image/decode/scale.h"
#include "pdf/image/gray/mono_palette.h"
#include "pdf/image/layout.h"

// The index bitmap. Unlike the colour decoders its reductions average along the row; the rows in
// between are dropped, those after the last kept row too.

using namespace image_decoding;

namespace {

constexpr std::int64_t half_1bit_from = (std::int64_t{1} << 25) + 1;
constexpr std::int64_t quarter_1bit_from = (std::int64_t{1} << 27) + 1;
constexpr std::int64_t quarter_8bit_from = (std::int64_t{1} << 26) + 1;

Scale mono_scale_of(std::int64_t count, int bpc) {
  if (count >= (bpc == 1 ? quarter_1bit_from : quarter_8bit_from)) return Scale::quarter;
  return bpc == 1 && count >= half_1bit_from ? Scale::half : Scale::full;
}

constexpr unsigned char bit_index[2] = {0, 255};

/// The averages, truncated, of each group of `Step` bits in every byte.
template <int Step>
struct GroupAverages {
  static constexpr int per_byte = 8 / Step;
  unsigned char of[256][static_cast<std::size_t>(per_byte)];

  constexpr GroupAverages() : of() {
    for (unsigned byte = 0; byte < 256; ++byte) {
      for (int i = 0; i < per_byte; ++i) {
        unsigned sum = 0;
        for (int bit = 0; bit < Step; ++bit) sum += bit_index[(byte >> (7 - i * Step - bit)) & 1];
        of[byte][i] = static_cast<unsigned char>(sum / Step);
      }
    }
  }
};

/// Whole bytes are averaged; of the part byte at the end each group gives its first bit.
template <int Step>
void average_bits(unsigned char* out, const unsigned char* row, int width) {
  static constexpr GroupAverages<Step> averages;
  const int whole = width / 8;
  for (int i = 0; i < whole; ++i, out += averages.per_byte) {
    std::memcpy(out, averages.of[row[i]], sizeof averages.of[0]);
  }
  unpack_row<1, Step>(out, row + whole, width % 8, bit_index);
}

/// The averages, truncated, of groups of four bytes; the last group may have fewer.
void average_bytes(unsigned char* out, const unsigned char* row, int width) {
  const int whole = width / 4;
  rows().average4(out, row, static_cast<std::size_t>(whole));
  row += std::ptrdiff_t{whole} * 4;
  const int rest = width % 4;
  if (rest == 0) return;
  int sum = 0;
  for (int i = 0; i < rest; ++i) sum += row[i];
  out[whole] = static_cast<unsigned char>(sum / rest);
}

template <int Step, class Convert>
void decode_rows(CPDFImage& image, const RowBuffer& buffer, Convert convert) {
  walk_rows<Step, AfterLast::read_on>(
      *image.stream, *image.bmp_mono, image.height, buffer,
      [&](unsigned char* out, const unsigned char* row) { convert(out, row, image.width); });
}

void decode(CPDFImage& image, Scale scale, const RowBuffer& buffer) {
  if (image.bpc == 8) {
    decode_rows<4>(image, buffer, average_bytes);
  } else if (scale == Scale::quarter) {
    decode_rows<4>(image, buffer, average_bits<4>);
  } else if (scale == Scale::half) {
    decode_rows<2>(image, buffer, average_bits<2>);
  } else {
    decode_rows<1>(image, buffer, [](unsigned char* out, const unsigned char* row, int width) {
      unpack_row<1, 1>(out, row, width, bit_index);
    });
  }
}

bool is_accepted(const CPDFImage& image) {
  if (image.smask != nullptr || image.mask != nullptr || image.cs == nullptr) return false;
  if ((image.flags & (CPDFImage::image_mask | CPDFImage::smask_in_data)) != 0) return false;
  if (image.cs->comp_count != 1) return false;
  const int family = image.cs->family;
  return image.bpc == 1 ||
         (image.bpc == 8 && (family == family_device_gray || family == family_cal_gray));
}

/// Makes the bitmap, or drops the stream where it cannot be made.
bool make_bitmap(CPDFImage& image, Scale scale) {
  auto* made = new (std::nothrow) CKXBmp8(scaled(image.width, scale), scaled(image.height, scale));
  if (store_bitmap(image.bmp_mono, made)) return true;
  release_stream(image);
  return false;
}

}  // namespace

CKXBmp8* CPDFImage::get_bmp_mono(_KXRGBA* palette) {
  if (!is_accepted(*this)) return nullptr;
  fill_mono_palette(*this, palette);
  if (stream == nullptr) return bmp_mono;

  const Scale scale = mono_scale_of(pixel_count(*this), bpc);
  if (bpc == 8 && scale == Scale::full) {
    if (!make_bitmap(*this, scale)) return nullptr;
    read_rows(*stream, *bmp_mono, height);
  } else {
    const RowBuffer buffer(packed_bytes(width, bpc));
    if (buffer.data() == nullptr || !make_bitmap(*this, scale)) return nullptr;
    decode(*this, scale, buffer);
  }
  release_stream(*this);
  return bmp_mono;
}
