// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/cs/color_space.h"

/// DeviceRGB: components R, G, B. Gray is the luma of ITU-R BT.601, truncated; get_cmyk takes the
/// common part of the complements as black.
class PDFBMP_API CPDFCSDeviceRGB : public CPDFCSBase {
 public:
  CPDFCSDeviceRGB();

  void get_gray(const PDF_COLOR& color, unsigned char& gray) override;
  void get_rgb(const PDF_COLOR& color, _KXRGBA& rgba) override;
  void get_cmyk(const PDF_COLOR& color, PDF_COLOR& cmyk) override;
  void batch_rgb(_KXRGBA* dst, const unsigned char* src, int nbytes) override;
  void batch_gray(unsigned char* dst, const unsigned char* src, int nbytes) override;
  void batch_rgb2(_KXRGBA* dst, const unsigned char* src, int nbytes) override;
  void batch_rgb4(_KXRGBA* dst, const unsigned char* src, int nbytes) override;
};
