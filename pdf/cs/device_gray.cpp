// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/device_gray.h"

#include "pdf/cs/runs.h"

CPDFCSDeviceGray::CPDFCSDeviceGray() {
  family = 1;
  comp_count = 1;
}

void CPDFCSDeviceGray::get_gray(const PDF_COLOR& color, unsigned char& gray) {
  gray = static_cast<unsigned char>(color.val[0]);
}

void CPDFCSDeviceGray::get_rgb(const PDF_COLOR& color, _KXRGBA& rgba) {
  const auto gray = static_cast<unsigned char>(color.val[0]);
  rgba = {gray, gray, gray, 255};
}

void CPDFCSDeviceGray::get_cmyk(const PDF_COLOR& color, PDF_COLOR& cmyk) {
  cmyk.val[0] = cmyk.val[1] = cmyk.val[2] = 0;
  cmyk.val[3] = static_cast<int>(255u - static_cast<unsigned>(color.val[0]));
}

void CPDFCSDeviceGray::batch_rgb(_KXRGBA* dst, const unsigned char* src, int nbytes) {
  runs::to_rgba(&CPDFRows::rgba_from_gray, 0, comp_count, dst, src, nbytes);
}

void CPDFCSDeviceGray::batch_gray(unsigned char* dst, const unsigned char* src, int nbytes) {
  runs::to_gray(&CPDFRows::gray_from_gray, comp_count, dst, src, nbytes);
}

void CPDFCSDeviceGray::batch_rgb2(_KXRGBA* dst, const unsigned char* src, int nbytes) {
  runs::to_rgba(&CPDFRows::rgba_from_gray, 1, comp_count, dst, src, nbytes);
}

void CPDFCSDeviceGray::batch_rgb4(_KXRGBA* dst, const unsigned char* src, int nbytes) {
  runs::to_rgba(&CPDFRows::rgba_from_gray, 2, comp_count, dst, src, nbytes);
}
