// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cstdint>

#include "pdf/cs/cmyk_formula.h"
#include "pdf/cs/cmyk_grid.h"
#include "pdf/cs/rows.h"

// The definition of every row conversion: one result after the other, each from source bytes that
// are read before it is written. What the vector forms must give, byte for byte.

namespace {

template <int Step>
void rgba_from_gray(_KXRGBA* dst, const unsigned char* src, size_t n) {
  for (size_t i = 0; i < n; ++i, src += Step) {
    const unsigned char gray = src[0];
    dst[i] = {gray, gray, gray, 255};
  }
}

template <int Step>
void rgba_from_rgb(_KXRGBA* dst, const unsigned char* src, size_t n) {
  for (size_t i = 0; i < n; ++i, src += size_t{3} * Step) {
    const unsigned char r = src[0], g = src[1], b = src[2];
    dst[i] = {b, g, r, 255};
  }
}

template <int Step>
void rgba_from_cmyk(_KXRGBA* dst, const unsigned char* src, size_t n) {
  for (size_t i = 0; i < n; ++i, src += size_t{4} * Step) {
    cmyk_to_rgba(src[0], src[1], src[2], src[3], dst[i]);
  }
}

template <int Step>
void rgba_from_cmyk_grid(_KXRGBA* dst, const unsigned char* src, size_t n,
                         const unsigned short* grid, size_t entries) {
  for (size_t i = 0; i < n; ++i, src += size_t{4} * Step) {
    cmyk_grid::to_rgba(grid, entries, src[0], src[1], src[2], src[3], dst[i]);
  }
}

void gray_from_gray(unsigned char* dst, const unsigned char* src, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    dst[2 * i] = src[i];
    dst[2 * i + 1] = 255;
  }
}

void gray_from_rgb(unsigned char* dst, const unsigned char* src, size_t n) {
  for (size_t i = 0; i < n; ++i, src += 3) {
    const uint32_t luma = 306u * src[0] + 601u * src[1] + 117u * src[2];
    dst[2 * i] = static_cast<unsigned char>(luma >> 10);
    dst[2 * i + 1] = 255;
  }
}

void gray_from_cmyk(unsigned char* dst, const unsigned char* src, size_t n) {
  for (size_t i = 0; i < n; ++i, src += 4) {
    dst[2 * i] = cmyk_to_gray(src[0], src[1], src[2], src[3]);
    dst[2 * i + 1] = 255;
  }
}

template <int Step>
void rgba_from_8bit(_KXRGBA* dst, const unsigned char* src, size_t n, const _KXRGBA* table) {
  for (size_t i = 0; i < n; ++i, src += Step) dst[i] = table[src[0]];
}

void gray_from_8bit(unsigned char* dst, const unsigned char* src, size_t n,
                    const unsigned char* table) {
  for (size_t i = 0; i < n; ++i) {
    const unsigned char* entry = table + 2 * src[i];
    const unsigned char gray = entry[0], alpha = entry[1];
    dst[2 * i] = gray;
    dst[2 * i + 1] = alpha;
  }
}

void bytes_from_8bit(unsigned char* dst, const unsigned char* src, size_t n,
                     const unsigned char* table) {
  for (size_t i = 0; i < n; ++i) dst[i] = table[src[i]];
}

unsigned bit_at(const unsigned char* src, size_t i) {
  return unsigned{src[i >> 3]} >> (7 - (i & 7)) & 1u;
}

void rgba_from_1bit(_KXRGBA* dst, const unsigned char* src, size_t n, const _KXRGBA* table) {
  for (size_t i = 0; i < n; ++i) dst[i] = table[bit_at(src, i)];
}

void gray_from_1bit(unsigned char* dst, const unsigned char* src, size_t n,
                    const unsigned char* table) {
  for (size_t i = 0; i < n; ++i) {
    const unsigned char* entry = table + 2 * bit_at(src, i);
    dst[2 * i] = entry[0];
    dst[2 * i + 1] = entry[1];
  }
}

void bytes_from_1bit(unsigned char* dst, const unsigned char* src, size_t n,
                     const unsigned char* table) {
  for (size_t i = 0; i < n; ++i) dst[i] = table[bit_at(src, i)];
}

void average4(unsigned char* dst, const unsigned char* src, size_t n) {
  for (size_t i = 0; i < n; ++i, src += 4) {
    dst[i] = static_cast<unsigned char>((src[0] + src[1] + src[2] + src[3]) >> 2);
  }
}

void complement(unsigned char* dst, const unsigned char* src, size_t n) {
  for (size_t i = 0; i < n; ++i) dst[i] = static_cast<unsigned char>(~src[i]);
}

void rgb_from_rgba(unsigned char* dst, const unsigned char* src, size_t n) {
  for (size_t i = 0; i < n; ++i, src += 4, dst += 3) {
    const unsigned char b = src[0], g = src[1], r = src[2];
    dst[0] = r;
    dst[1] = g;
    dst[2] = b;
  }
}

template <size_t Channels>
void with_alpha(unsigned char* dst, const unsigned char* src, size_t n,
                const unsigned char* alpha) {
  for (size_t i = 0; i < n; ++i, src += Channels, dst += Channels + 1) {
    for (size_t c = 0; c < Channels; ++c) dst[c] = src[c];
    dst[Channels] = alpha[i];
  }
}

}  // namespace

const CPDFRows scalar_rows = {
    .cpu = CPDFCpu::scalar,
    .rgba_from_gray = {rgba_from_gray<1>, rgba_from_gray<2>, rgba_from_gray<4>},
    .rgba_from_rgb = {rgba_from_rgb<1>, rgba_from_rgb<2>, rgba_from_rgb<4>},
    .rgba_from_cmyk = {rgba_from_cmyk<1>, rgba_from_cmyk<2>, rgba_from_cmyk<4>},
    .rgba_from_cmyk_grid = {rgba_from_cmyk_grid<1>, rgba_from_cmyk_grid<2>, rgba_from_cmyk_grid<4>},
    .gray_from_gray = gray_from_gray,
    .gray_from_rgb = gray_from_rgb,
    .gray_from_cmyk = gray_from_cmyk,
    .rgba_from_8bit = {rgba_from_8bit<1>, rgba_from_8bit<2>, rgba_from_8bit<4>},
    .gray_from_8bit = gray_from_8bit,
    .bytes_from_8bit = bytes_from_8bit,
    .rgba_from_1bit = rgba_from_1bit,
    .gray_from_1bit = gray_from_1bit,
    .bytes_from_1bit = bytes_from_1bit,
    .average4 = average4,
    .complement = complement,
    .rgb_from_rgba = rgb_from_rgba,
    .rgba_from_rgb_and_alpha = with_alpha<3>,
    .gray_alpha_from_gray_and_alpha = with_alpha<1>,
};
