// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "kx/bmp.h"

#include <cstddef>
#include <cstdint>
#include <limits>

#include "kx/alloc.h"

CKXBmp::~CKXBmp() { KXFree(pixels); }

void CKXBmp::allocate(int new_width, int new_height, int bits_per_pixel, int row_alignment) {
  width = new_width;
  height = new_height;
  bpp = bits_per_pixel;
  if (width < 1 || height < 1) return;

  const std::int64_t row_bits = std::int64_t{width} * bits_per_pixel;
  const std::int64_t row_bytes = (row_bits + 7) / 8;
  const std::int64_t aligned = (row_bytes + row_alignment - 1) / row_alignment * row_alignment;
  if (aligned > std::numeric_limits<int>::max()) return;
  stride = static_cast<int>(aligned);

  // Two positive 31-bit factors: the product always fits 64 bits, not always the address space.
  const std::int64_t bytes = aligned * height;
  if (static_cast<std::uint64_t>(bytes) > std::numeric_limits<std::ptrdiff_t>::max()) return;
  pixels = static_cast<unsigned char*>(
      KXCalloc(static_cast<std::size_t>(height), static_cast<std::size_t>(stride)));
}

CKXBmp32::CKXBmp32(int new_width, int new_height) { allocate(new_width, new_height, 32, 4); }

CKXBmp8::CKXBmp8(int new_width, int new_height) { allocate(new_width, new_height, 8, 1); }

void CKXBmpGray::create(int new_width, int new_height) { allocate(new_width, new_height, 16, 4); }
