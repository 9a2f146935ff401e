// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/device_rgb.h"

#include <algorithm>

#include "pdf/cs/runs.h"

CPDFCSDeviceRGB::CPDFCSDeviceRGB() {
  family = 3;
  comp_count = 3;
}

void CPDFCSDeviceRGB::get_gray(const PDF_COLOR& color, unsigned char& gray) {
  // ITU-R BT.601 luma in units of 1/1024.
  const unsigned luma = 306u * static_cast<unsigned>(color.val[0]) +
                        601u * static_cast<unsigned>(color.val[1]) +
                        117u * static_cast<unsigned>(color.val[2]);
  gray = static_cast<unsigned char>(luma >> 10);
}

void CPDFCSDeviceRGB::get_rgb(const PDF_COLOR& color, _KXRGBA& rgba) {
  rgba.b = static_cast<unsigned char>(color.val[2]);
  rgba.g = static_cast<unsigned char>(color.val[1]);
  rgba.r = static_cast<unsigned char>(color.val[0]);
  rgba.a = 255;
}

void CPDFCSDeviceRGB::get_cmyk(const PDF_COLOR& color, PDF_COLOR& cmyk) {
  int ink[3];
  for (int i = 0; i < 3; ++i) ink[i] = static_cast<int>(~static_cast<unsigned>(color.val[i]) & 255);
  const int black = std::min({ink[0], ink[1], ink[2]});
  for (int i = 0; i < 3; ++i) cmyk.val[i] = ink[i] - black;
  cmyk.val[3] = black;
}

void CPDFCSDeviceRGB::batch_rgb(_KXRGBA* dst, const unsigned char* src, int nbytes) {
  runs::to_rgba(&CPDFRows::rgba_from_rgb, 0, comp_count, dst, src, nbytes);
}

void CPDFCSDeviceRGB::batch_gray(unsigned char* dst, const unsigned char* src, int nbytes) {
  runs::to_gray(&CPDFRows::gray_from_rgb, comp_count, dst, src, nbytes);
}

void CPDFCSDeviceRGB::batch_rgb2(_KXRGBA* dst, const unsigned char* src, int nbytes) {
  runs::to_rgba(&CPDFRows::rgba_from_rgb, 1, comp_count, dst, src, nbytes);
}

void CPDFCSDeviceRGB::batch_rgb4(_KXRGBA* dst, const unsigned char* src, int nbytes) {
  runs::to_rgba(&CPDFRows::rgba_from_rgb, 2, comp_count, dst, src, nbytes);
}
