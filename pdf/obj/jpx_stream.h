// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/obj/stream.h"

/// The seam to a JPEG 2000 decoder: a stream of `kind` 9. read_block delivers the colour samples
/// as 8-bit values, pixel by pixel, `comp_count` of them a pixel; read_alpha delivers the opacity.
/// Colour and alpha are read independently of each other, each from the first row down.
class PDFBMP_API CPDFStreamJPX : public CPDFStream {
 public:
  CPDFStreamJPX() { kind = 9; }

  int comp_count = 0;      ///< Colour components of the codestream, alpha not counted.
  int alpha_channel = -1;  ///< The alpha channel's number, negative where there is none.

  /// Fills up to `n` bytes with the next row of 8-bit alpha samples and returns how many; less
  /// than 1 when nothing was read.
  virtual int read_alpha(void* dst, int n) = 0;
};
