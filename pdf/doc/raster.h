// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kx/api.h"
#include "kx/rgba.h"

/// How the pixels of a row lie, top row first, each row starting on a byte boundary.
///
///     gray1        1 bit, most significant first, 1 is white
///     gray8        1 byte
///     gray_alpha8  2 bytes: gray, alpha
///     indexed      1, 2, 4 or 8 bits (`index_bits`), most significant first, into `palette`
///     rgb8         3 bytes: r, g, b
///     rgba8        4 bytes: r, g, b, alpha (not premultiplied)
enum class CPDFPixelFormat { gray1, gray8, gray_alpha8, indexed, rgb8, rgba8 };

struct PDFBMP_API CPDFRasterInfo {
  int width = 0;
  int height = 0;
  CPDFPixelFormat format = CPDFPixelFormat::rgb8;
  int index_bits = 8;
  std::vector<_KXRGBA> palette;  ///< For `indexed`: at most 2^index_bits opaque colours.
  double ppi_x = 0, ppi_y = 0;   ///< 0 where it is not known.

  int bits_per_pixel() const;
  std::int64_t row_bytes() const;
};

/// A picture that is read row by row, from the top.
class PDFBMP_API CPDFRasterReader {
 public:
  virtual ~CPDFRasterReader() = default;
  virtual const CPDFRasterInfo& info() const = 0;

  /// Writes the next row's row_bytes() to `dst`. False where no row is left or memory failed; rows
  /// whose samples cannot be read come as blank ones.
  virtual bool read_row(unsigned char* dst) = 0;
};

/// Takes a picture row by row.
class PDFBMP_API CPDFRasterWriter {
 public:
  virtual ~CPDFRasterWriter() = default;
  virtual bool begin(const CPDFRasterInfo& info) = 0;    ///< Once, before the first row.
  virtual bool write_row(const unsigned char* row) = 0;  ///< `info.height` times.
  virtual bool finish() = 0;                             ///< Once, after the last row.
};

/// Where a writer's bytes go. False means that no more can be written.
class PDFBMP_API CPDFByteSink {
 public:
  virtual ~CPDFByteSink() = default;
  virtual bool write(const void* bytes, std::size_t n) = 0;
};
