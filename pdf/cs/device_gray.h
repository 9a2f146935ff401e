// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/cs/color_space.h"

/// DeviceGray: one component, 0 black to 255 white. Values outside are stored by their low 8 bits;
/// get_cmyk gives K = 255 - gray without clamping.
class PDFBMP_API CPDFCSDeviceGray : public CPDFCSBase {
 public:
  CPDFCSDeviceGray();

  void get_gray(const PDF_COLOR& color, unsigned char& gray) override;
  void get_rgb(const PDF_COLOR& color, _KXRGBA& rgba) override;
  void get_cmyk(const PDF_COLOR& color, PDF_COLOR& cmyk) override;
  void batch_rgb(_KXRGBA* dst, const unsigned char* src, int nbytes) override;
  void batch_gray(unsigned char* dst, const unsigned char* src, int nbytes) override;
  void batch_rgb2(_KXRGBA* dst, const unsigned char* src, int nbytes) override;
  void batch_rgb4(_KXRGBA* dst, const unsigned char* src, int nbytes) override;
};
