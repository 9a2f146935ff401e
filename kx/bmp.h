// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "kx/api.h"

/// A bitmap of any kind. Owns its pixels (memory of KXAlloc's family) and frees them when it is
/// destroyed. Rows lie one after the other, `stride` bytes apart; whoever fills a bitmap from an
/// image puts the picture's first row last in memory (bottom-up).
///
/// No constructor throws. One that could not make the pixels (a width or height below 1, more
/// bytes than the signed 32-bit stride or the address space holds, or no memory) leaves `pixels`
/// null; callers look at `width`, `height` and `pixels` right after construction. The pixels of a
/// new bitmap are zero bytes.
class PDFBMP_API CKXBmp {
 public:
  CKXBmp() = default;  ///< All fields zero, no pixels.
  virtual ~CKXBmp();
  CKXBmp(const CKXBmp&) = delete;
  CKXBmp& operator=(const CKXBmp&) = delete;

  unsigned char* pixels = nullptr;  ///< First byte of memory, null when there are no pixels.
  int width = 0;                    ///< Pixels in a row.
  int height = 0;                   ///< Rows.
  int stride = 0;                   ///< Bytes from one row of memory to the next.
  int bpp = 0;                      ///< Bits per pixel.

 protected:
  /// Sets the four sizes and takes height * stride zero bytes. The stride is the row's
  /// `width * bpp` bits brought up to a multiple of `row_alignment` bytes.
  void allocate(int new_width, int new_height, int bits_per_pixel, int row_alignment);
};

/// One `_KXRGBA` a pixel, stride 4 * width.
class PDFBMP_API CKXBmp32 : public CKXBmp {
 public:
  CKXBmp32(int width, int height);
};

/// One byte a pixel, stride = width.
class PDFBMP_API CKXBmp8 : public CKXBmp {
 public:
  CKXBmp8(int width, int height);
};

/// Two bytes a pixel: gray (0 black, 255 white), then alpha. Rows are multiples of 4 bytes.
class PDFBMP_API CKXBmpGray : public CKXBmp {
 public:
  CKXBmpGray() = default;  ///< All fields zero, no pixels.

  /// Sets the size and takes zero (transparent) pixels; `pixels` stays null where that fails.
  /// To be called once, on a default-constructed bitmap.
  void create(int new_width, int new_height);
};
