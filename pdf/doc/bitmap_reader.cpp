// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/bitmap_reader.h"

#include <cstddef>
#include <cstring>
#include <new>
#include <utility>

namespace pdfbmp {
namespace {

// Converts `n` pixels of a bitmap row to the row format of a reader.
using RowConverter = void (*)(unsigned char* dst, const unsigned char* src, int n);

template <class Pixel>
void to_bits(unsigned char* dst, int n, Pixel is_set) {
  for (int i = 0; i < n; i += 8) {
    unsigned bits = 0;
    for (int k = i; k < i + 8; ++k) bits = bits << 1 | (k < n && is_set(k) ? 1u : 0u);
    *dst++ = static_cast<unsigned char>(bits);
  }
}

// From every `Step`th byte of the bitmap.
template <int Step>
void gray1_row(unsigned char* dst, const unsigned char* src, int n) {
  to_bits(dst, n, [src](int i) { return src[std::ptrdiff_t{i} * Step] != 0; });
}

template <int Step>
void gray8_row(unsigned char* dst, const unsigned char* src, int n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) dst[i] = src[i * Step];
}

void gray_alpha8_row(unsigned char* dst, const unsigned char* src, int n) {
  std::memcpy(dst, src, static_cast<std::size_t>(n) * 2);
}

// Bytes b, g, r, a to r, g, b.
void rgb8_row(unsigned char* __restrict dst, const unsigned char* __restrict src, int n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    dst[3 * i] = src[4 * i + 2];
    dst[3 * i + 1] = src[4 * i + 1];
    dst[3 * i + 2] = src[4 * i];
  }
}

// Bytes b, g, r, a to r, g, b, a.
void rgba8_row(unsigned char* __restrict dst, const unsigned char* __restrict src, int n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    dst[4 * i] = src[4 * i + 2];
    dst[4 * i + 1] = src[4 * i + 1];
    dst[4 * i + 2] = src[4 * i];
    dst[4 * i + 3] = src[4 * i + 3];
  }
}

class BitmapReader final : public CPDFRasterReader {
 public:
  BitmapReader(const CKXBmp& bmp, RowConverter convert) : bmp_(bmp), convert_(convert) {
    info_.width = bmp.width;
    info_.height = bmp.height;
  }

  const CPDFRasterInfo& info() const override { return info_; }
  CPDFRasterInfo& info() { return info_; }

  bool read_row(unsigned char* dst) override {
    if (row_ >= bmp_.height) return false;
    // The picture's first row lies last in memory.
    const std::ptrdiff_t at = bmp_.height - 1 - row_++;
    convert_(dst, bmp_.pixels + at * bmp_.stride, bmp_.width);
    return true;
  }

 private:
  const CKXBmp& bmp_;
  RowConverter convert_;
  CPDFRasterInfo info_;
  int row_ = 0;
};

std::unique_ptr<CPDFRasterReader> make_reader(const CKXBmp& bmp, CPDFPixelFormat format,
                                              RowConverter convert) {
  std::unique_ptr<BitmapReader> reader(new (std::nothrow) BitmapReader(bmp, convert));
  if (reader != nullptr) reader->info().format = format;
  return reader;
}

// What all pixels of a bitmap have in common. Rows are looked at whole, so that the loops over one
// are free of exits.
struct Content {
  bool opaque = true;
  bool gray = true;
  bool extremes = true;  // No level but 0 and 255.

  void look_at_rgba(const unsigned char* row, int n) {
    unsigned alpha = 255, tint = 0, middle = 0;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      const unsigned b = row[4 * i], g = row[4 * i + 1], r = row[4 * i + 2];
      alpha &= row[4 * i + 3];
      tint |= (b ^ g) | (g ^ r);
      middle |= g ^ (0u - (g & 1));
    }
    note(alpha, tint, middle);
  }

  void look_at_gray_alpha(const unsigned char* row, int n) {
    unsigned alpha = 255, middle = 0;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      const unsigned level = row[2 * i];
      alpha &= row[2 * i + 1];
      middle |= level ^ (0u - (level & 1));
    }
    note(alpha, 0, middle);
  }

  void look_at_levels(const unsigned char* row, int n) {
    unsigned middle = 0;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
      middle |= unsigned{row[i]} ^ (0u - (row[i] & 1u));
    }
    note(255, 0, middle);
  }

 private:
  // `middle` has a bit below 256 where some level is neither 0 nor 255: of those two, the low bit
  // tells all others.
  void note(unsigned alpha, unsigned tint, unsigned middle) {
    opaque = opaque && alpha == 255;
    gray = gray && tint == 0;
    extremes = extremes && (middle & 255) == 0;
  }
};

// Gives the rows to `look` until it returns false, since nothing is left to find out.
template <class Look>
Content content_of(const CKXBmp& bmp, Look look) {
  Content content;
  for (std::ptrdiff_t y = 0; y < bmp.height; ++y) {
    if (!look(content, bmp.pixels + y * bmp.stride)) break;
  }
  return content;
}

}  // namespace

std::unique_ptr<CPDFRasterReader> make_bitmap_reader(const CKXBmp32& bmp) {
  if (bmp.pixels == nullptr) return nullptr;
  const Content content = content_of(bmp, [&](Content& c, const unsigned char* row) {
    c.look_at_rgba(row, bmp.width);
    return c.opaque;
  });
  if (!content.opaque) return make_reader(bmp, CPDFPixelFormat::rgba8, rgba8_row);
  if (!content.gray) return make_reader(bmp, CPDFPixelFormat::rgb8, rgb8_row);
  if (content.extremes) return make_reader(bmp, CPDFPixelFormat::gray1, gray1_row<4>);
  return make_reader(bmp, CPDFPixelFormat::gray8, gray8_row<4>);
}

std::unique_ptr<CPDFRasterReader> make_bitmap_reader(const CKXBmpGray& bmp) {
  if (bmp.pixels == nullptr) return nullptr;
  const Content content = content_of(bmp, [&](Content& c, const unsigned char* row) {
    c.look_at_gray_alpha(row, bmp.width);
    return c.opaque;
  });
  if (!content.opaque) return make_reader(bmp, CPDFPixelFormat::gray_alpha8, gray_alpha8_row);
  if (content.extremes) return make_reader(bmp, CPDFPixelFormat::gray1, gray1_row<2>);
  return make_reader(bmp, CPDFPixelFormat::gray8, gray8_row<2>);
}

std::unique_ptr<CPDFRasterReader> make_bitmap_reader(const CKXBmp8& bmp) {
  if (bmp.pixels == nullptr) return nullptr;
  return make_reader(bmp, CPDFPixelFormat::gray8, gray8_row<1>);
}

std::unique_ptr<CPDFRasterReader> make_bitmap_reader(const CKXBmp8& bmp, const _KXRGBA* palette) {
  if (bmp.pixels == nullptr) return nullptr;
  const Content content = content_of(bmp, [&](Content& c, const unsigned char* row) {
    c.look_at_levels(row, bmp.width);
    return c.extremes;
  });
  const bool two = content.extremes;
  std::unique_ptr<BitmapReader> reader(new (std::nothrow)
                                           BitmapReader(bmp, two ? gray1_row<1> : gray8_row<1>));
  if (reader == nullptr) return nullptr;
  CPDFRasterInfo& info = reader->info();
  info.format = CPDFPixelFormat::indexed;
  info.index_bits = two ? 1 : 8;
  if (two) {
    info.palette = {palette[0], palette[255]};
  } else {
    info.palette.assign(palette, palette + 256);
  }
  return reader;
}

}  // namespace pdfbmp
