// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/cs/color_space.h"

/// DeviceCMYK by formula: components C, M, Y, K, 255 is full ink. RGB is the multilinear
/// interpolation between the 16 corner colours of pdf/cs/cmyk_formula.h: exact integer arithmetic,
/// no ink gives 254. Gray is a formula of its own, in which no ink gives 255. Values outside 0..255
/// wrap in 32 bits.
class PDFBMP_API CPDFCSDeviceCMYK : public CPDFCSBase {
 public:
  CPDFCSDeviceCMYK();

  void get_gray(const PDF_COLOR& color, unsigned char& gray) override;
  void get_rgb(const PDF_COLOR& color, _KXRGBA& rgba) override;
  /// Copies all 16 words, those past the fourth too.
  void get_cmyk(const PDF_COLOR& color, PDF_COLOR& cmyk) override;
  /// Black: C = M = Y = 0, K = 255; val[4..15] left alone.
  void get_default_color(PDF_COLOR& color) override;
  void batch_rgb(_KXRGBA* dst, const unsigned char* src, int nbytes) override;
  void batch_gray(unsigned char* dst, const unsigned char* src, int nbytes) override;
  void batch_rgb2(_KXRGBA* dst, const unsigned char* src, int nbytes) override;
  void batch_rgb4(_KXRGBA* dst, const unsigned char* src, int nbytes) override;
  int support_op() override;  ///< 1
};
