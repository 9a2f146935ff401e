// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/device_cmyk.h"

#include "pdf/cs/cmyk_formula.h"
#include "pdf/cs/runs.h"

CPDFCSDeviceCMYK::CPDFCSDeviceCMYK() {
  family = 5;
  comp_count = 4;
}

void CPDFCSDeviceCMYK::get_gray(const PDF_COLOR& color, unsigned char& gray) {
  const auto ink = [&color](int i) { return static_cast<uint32_t>(color.val[i]); };
  gray = cmyk_to_gray(ink(0), ink(1), ink(2), ink(3));
}

void CPDFCSDeviceCMYK::get_rgb(const PDF_COLOR& color, _KXRGBA& rgba) {
  const auto ink = [&color](int i) { return static_cast<uint32_t>(color.val[i]); };
  cmyk_to_rgba(ink(0), ink(1), ink(2), ink(3), rgba);
}

void CPDFCSDeviceCMYK::get_cmyk(const PDF_COLOR& color, PDF_COLOR& cmyk) { cmyk = color; }

void CPDFCSDeviceCMYK::get_default_color(PDF_COLOR& color) {
  CPDFCSBase::get_default_color(color);
  color.val[3] = 255;
}

void CPDFCSDeviceCMYK::batch_rgb(_KXRGBA* dst, const unsigned char* src, int nbytes) {
  runs::to_rgba(&CPDFRows::rgba_from_cmyk, 0, comp_count, dst, src, nbytes);
}

void CPDFCSDeviceCMYK::batch_gray(unsigned char* dst, const unsigned char* src, int nbytes) {
  runs::to_gray(&CPDFRows::gray_from_cmyk, comp_count, dst, src, nbytes);
}

void CPDFCSDeviceCMYK::batch_rgb2(_KXRGBA* dst, const unsigned char* src, int nbytes) {
  runs::to_rgba(&CPDFRows::rgba_from_cmyk, 1, comp_count, dst, src, nbytes);
}

void CPDFCSDeviceCMYK::batch_rgb4(_KXRGBA* dst, const unsigned char* src, int nbytes) {
  runs::to_rgba(&CPDFRows::rgba_from_cmyk, 2, comp_count, dst, src, nbytes);
}

int CPDFCSDeviceCMYK::support_op() { return 1; }
