// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "kx/rgba.h"

// DeviceCMYK to RGB and gray, one colour at a time, in unsigned 32-bit arithmetic that wraps.
//
// RGB is interpolated between the colours of the 16 corners of the CMYK cube. A corner's product P
// is one factor of each axis multiplied, its weight w = P >> 24:
//
//     axis              no ink     full ink
//     cyan, magenta     256 - v    v
//     yellow, black     255 - v    v
//
// A channel is (sum of coefficient x w) >> 10, plus paper's w, plus what stands beside a corner
// below. Every shift truncates. The weights of a colour in range add up to 254 at most.

/// The coefficients of a corner, in units of 1/1024.
struct CPDFInk {
  uint32_t r, g, b;
};
/// By corner: bit 3 is cyan, bit 2 magenta, bit 1 yellow, bit 0 black.
inline constexpr CPDFInk cmyk_corners[16] = {
    {0, 0, 0},        // paper: w added in every channel
    {141, 0, 0},      // K: P >> 27 added in green and blue
    {0, 972, 0},      // Y: w added in red
    {111, 105, 0},    // Y K
    {948, 0, 562},    // M
    {145, 0, 0},      // M K
    {952, 112, 145},  // M Y
    {135, 0, 0},      // M Y K
    {0, 695, 960},    // C
    {0, 60, 145},     // C K
    {0, 667, 321},    // C Y
    {0, 76, 0},       // C Y K
    {185, 197, 586},  // C M
    {0, 0, 0},        // C M K
    {217, 217, 229},  // C M Y
    {0, 0, 0},        // C M Y K
};

inline void cmyk_to_rgba(uint32_t c, uint32_t m, uint32_t y, uint32_t k, _KXRGBA& rgba) {
  const uint32_t cm[4] = {(256 - c) * (256 - m), (256 - c) * m, c * (256 - m), c * m};
  const uint32_t yk[4] = {(255 - y) * (255 - k), (255 - y) * k, y * (255 - k), y * k};
  uint32_t r = 0, g = 0, b = 0;
#pragma GCC unroll 16
  for (unsigned corner = 1; corner < 15; ++corner) {
    const uint32_t w = (yk[corner & 3] * cm[corner >> 2]) >> 24;
    r += cmyk_corners[corner].r * w;
    g += cmyk_corners[corner].g * w;
    b += cmyk_corners[corner].b * w;
  }
  const uint32_t paper = (yk[0] * cm[0]) >> 24;
  const uint32_t yellow = (yk[2] * cm[0]) >> 24;
  const uint32_t black = (yk[1] * cm[0]) >> 27;
  rgba.r = static_cast<unsigned char>(paper + yellow + (r >> 10));
  rgba.g = static_cast<unsigned char>(paper + black + (g >> 10));
  rgba.b = static_cast<unsigned char>(paper + black + (b >> 10));
  rgba.a = 255;
}

/// Black plus the BT.601 luma of the other inks, taken from 255; 0 where that exceeds 254.
inline unsigned char cmyk_to_gray(uint32_t c, uint32_t m, uint32_t y, uint32_t k) {
  // The sum is shifted as a signed number, which matters only for colours outside 0..255.
  const auto luma = static_cast<int32_t>(306 * c + 601 * m + 117 * y) >> 10;
  const uint32_t ink = k + static_cast<uint32_t>(luma);
  return static_cast<unsigned char>(ink > 254 ? 0 : 255 - ink);
}
