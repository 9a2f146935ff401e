// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tests/reference/image_reference.h"

#include <algorithm>
#include <functional>

namespace {

using Bytes = std::vector<unsigned char>;

/// `count` bits from bit `first` on, most significant first.
int bits_at(const Bytes& row, long first, int count) {
  int value = 0;
  for (long i = first; i < first + count; ++i) { value = value * 2 + (row[static_cast<size_t>(i / 8)] >> (7 - i % 8) & 1); }
  return value;
}

int ceil_div(int n, int by) { return (n + by - 1) / by; }

/// Reads rows as a decoder must, each kept one into a bitmap row; `put(row, out)` makes its pixels.
Bytes walk(const CPDFImage& image, int step, int stride, int row_bits, bool drops_after_last, CPDFStream& stream,
           const std::function<void(const Bytes&, unsigned char*)>& put) {
  const int row_bytes = ceil_div(row_bits, 8);
  const int rows = ceil_div(image.height, step);
  Bytes row(static_cast<size_t>(row_bytes));
  Bytes bitmap(static_cast<size_t>(rows) * static_cast<size_t>(stride));
  for (int y = 0; y < rows; ++y) {
    unsigned char* out = bitmap.data() + (rows - 1 - y) * stride;
    if (stream.read_block(row.data(), row_bytes) >= 1) put(row, out);
    if (y == rows - 1 && !drops_after_last) break;
    for (int i = 1; i < step; ++i) stream.read_block(row.data(), row_bytes);
  }
  return bitmap;
}

bool falls(const CPDFImage& image, int i) { return image.has_decode != 0 && image.decode_min[i] > image.decode_max[i]; }

/// The components of the pixel at sample x, for colour or for gray.
PDF_COLOR color_at(const CPDFImage& image, const Bytes& row, int x, bool is_gray) {
  const int components = image.cs->comp_count;
  const int n = image.bpc * components;
  const bool indexed = image.cs->family == 8;
  const long first = static_cast<long>(x) * n;
  PDF_COLOR color = {};
  bool is_one = image.bpc <= 8 && (n == 1 || n == 2 || n == 4 || n == 8);
  if (!is_gray && n == 4 && !indexed && (components == 2 || components == 4)) is_one = false;
  if (!is_gray && n == 8 && !falls(image, 0) && components == 4) is_one = false;
  if (is_one) {
    const int value = bits_at(row, first, n);
    int& v = color.val[0];
    if (n == 1) v = value != 0 ? (indexed ? 1 : 255) : 0;
    if (n == 1 && image.has_decode != 0) v = value != 0 ? image.decode_max[0] : image.decode_min[0];
    if (n == 2) v = indexed ? value : 64 * value;
    if (n == 4) v = indexed ? value : 16 * value;
    if (n == 8) v = falls(image, 0) ? 255 - value : value;
    return color;
  }
  for (int i = 0; i < components; ++i) {
    const int value = bits_at(row, first + i * image.bpc, image.bpc);
    color.val[i] = value * 255 / ((1 << image.bpc) - 1);
    if (n == 32 && image.bpc == 8 && falls(image, i)) color.val[i] = 255 - value;
  }
  return color;
}

}  // namespace

Bytes image_reference::color(const CPDFImage& image, int step, CPDFStream& stream) {
  const int n = image.bpc * image.cs->comp_count;
  const bool keyed = image.has_mask != 0 && image.mask == nullptr;
  const int lo = image.mask_min.val[0], hi = image.mask_max.val[0];
  return walk(image, step, 4 * ceil_div(image.width, step), n * image.width, false, stream, [&](const Bytes& row, unsigned char* out) {
    for (int x = 0; x < image.width; x += step, out += 4) {
      const PDF_COLOR color = color_at(image, row, x, false);
      _KXRGBA pixel = {};
      image.cs->get_rgb(color, pixel);
      pixel.a = 255;
      const int family = image.cs->family;
      if (n == 24 && step > 1 && (family == 3 || family == 4)) {
        const size_t at = static_cast<size_t>(x) * 3;
        pixel = {row[at + 2], row[at + 1], row[at], 255};
      }
      if (keyed && image.bpc <= 8 && (n == 4 || n == 8)) {
        const int value = bits_at(row, static_cast<long>(x) * n, n);
        const bool in = lo <= value && value <= hi;
        const bool turned = n == 8 && hi >= 0 && hi <= value && value <= lo;
        if (in || turned) pixel = {};
      }
      const unsigned char bytes[] = {pixel.b, pixel.g, pixel.r, pixel.a};
      std::copy(bytes, bytes + 4, out);
    }
  });
}

void image_reference::clear_key(const CPDFImage& image, Bytes& bitmap) {
  if (image.has_mask == 0 || image.mask != nullptr || image.bpc * image.cs->comp_count == 8) return;
  _KXRGBA a = {}, b = {};
  image.cs->get_rgb(image.mask_min, a);
  image.cs->get_rgb(image.mask_max, b);
  const auto between = [](int v, int p, int q) { return std::min(p, q) <= v && v <= std::max(p, q); };
  for (size_t i = 0; i < bitmap.size(); i += 4) {
    if (between(bitmap[i], a.b, b.b) && between(bitmap[i + 1], a.g, b.g) && between(bitmap[i + 2], a.r, b.r)) { bitmap[i + 3] = 0; }
  }
}

Bytes image_reference::gray(const CPDFImage& image, CPDFStream& stream) {
  return walk(image, 1, ceil_div(2 * image.width, 4) * 4, image.bpc * image.cs->comp_count * image.width, false, stream,
              [&](const Bytes& row, unsigned char* out) {
                for (int x = 0; x < image.width; ++x) {
                  image.cs->get_gray(color_at(image, row, x, true), out[2 * x]);
                  out[2 * x + 1] = 255;
                }
              });
}

Bytes image_reference::bits(const CPDFImage& image, int zero, int one, CPDFStream& stream) {
  return walk(image, 1, image.width, image.width, false, stream, [&](const Bytes& row, unsigned char* out) {
    for (int x = 0; x < image.width; ++x) { out[x] = static_cast<unsigned char>(bits_at(row, x, 1) != 0 ? one : zero); }
  });
}

/// A short row that is not complemented is read into the bitmap itself: its rest stays 0.
Bytes image_reference::bytes(const CPDFImage& image, bool complement, CPDFStream& stream) {
  Bytes bitmap(static_cast<size_t>(image.width) * static_cast<size_t>(image.height));
  if (complement) {
    return walk(image, 1, image.width, 8 * image.width, false, stream, [&](const Bytes& row, unsigned char* out) {
      for (const unsigned char v : row) *out++ = static_cast<unsigned char>(255 - v);
    });
  }
  for (int y = image.height - 1; y >= 0; --y) { stream.read_block(bitmap.data() + y * image.width, image.width); }
  return bitmap;
}

Bytes image_reference::mono(const CPDFImage& image, int step, CPDFStream& stream) {
  if (image.bpc == 8 && step == 1) return bytes(image, false, stream);
  return walk(image, step, ceil_div(image.width, step), image.bpc * image.width, true, stream, [&](const Bytes& row, unsigned char* out) {
    for (int x = 0; x < image.width; x += step) {
      // Only the first bit of a group counts in the part byte at the row's end.
      const bool part_byte = image.bpc == 1 && x / 8 == image.width / 8;
      const int group = part_byte ? 1 : std::min(step, image.width - x);
      int sum = 0;
      for (int i = 0; i < group; ++i) { sum += image.bpc == 1 ? 255 * bits_at(row, x + i, 1) : bits_at(row, 8 * (x + i), 8); }
      *out++ = static_cast<unsigned char>(sum / group);
    }
  });
}
