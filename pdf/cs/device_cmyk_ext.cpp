// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/device_cmyk_ext.h"

#include "pdf/cs/cmyk_formula.h"
#include "pdf/cs/cmyk_grid.h"
#include "pdf/cs/runs.h"

unsigned short* CPDFCSDeviceCMYKExt::ms_icc = nullptr;
unsigned short* CPDFCSDeviceCMYKExt::ms_icc_end = nullptr;

namespace {

/// Entries of the installed table; 0 where there is none.
size_t table_size() {
  const unsigned short* begin = CPDFCSDeviceCMYKExt::ms_icc;
  const unsigned short* end = CPDFCSDeviceCMYKExt::ms_icc_end;
  return begin && end > begin ? static_cast<size_t>(end - begin) : 0;
}

}  // namespace

CPDFCSDeviceCMYKExt::CPDFCSDeviceCMYKExt() {
  family = 12;
  comp_count = 4;
}

void CPDFCSDeviceCMYKExt::get_gray(const PDF_COLOR& color, unsigned char& gray) {
  const auto ink = [&color](int i) { return static_cast<uint32_t>(color.val[i]); };
  gray = cmyk_to_gray(ink(0), ink(1), ink(2), ink(3));
}

void CPDFCSDeviceCMYKExt::get_rgb(const PDF_COLOR& color, _KXRGBA& rgba) {
  cmyk_grid::to_rgba(ms_icc, table_size(), color.val[0], color.val[1], color.val[2], color.val[3],
                     rgba);
}

void CPDFCSDeviceCMYKExt::get_cmyk(const PDF_COLOR& color, PDF_COLOR& cmyk) { cmyk = color; }

void CPDFCSDeviceCMYKExt::get_default_color(PDF_COLOR& color) {
  CPDFCSBase::get_default_color(color);
  color.val[3] = 255;
}

void CPDFCSDeviceCMYKExt::batch_rgb(_KXRGBA* dst, const unsigned char* src, int nbytes) {
  runs::to_rgba(&CPDFRows::rgba_from_cmyk_grid, 0, comp_count, dst, src, nbytes, ms_icc,
                table_size());
}

void CPDFCSDeviceCMYKExt::batch_gray(unsigned char* dst, const unsigned char* src, int nbytes) {
  runs::to_gray(&CPDFRows::gray_from_cmyk, comp_count, dst, src, nbytes);
}

void CPDFCSDeviceCMYKExt::batch_rgb2(_KXRGBA* dst, const unsigned char* src, int nbytes) {
  runs::to_rgba(&CPDFRows::rgba_from_cmyk_grid, 1, comp_count, dst, src, nbytes, ms_icc,
                table_size());
}

void CPDFCSDeviceCMYKExt::batch_rgb4(_KXRGBA* dst, const unsigned char* src, int nbytes) {
  runs::to_rgba(&CPDFRows::rgba_from_cmyk_grid, 2, comp_count, dst, src, nbytes, ms_icc,
                table_size());
}

int CPDFCSDeviceCMYKExt::support_op() { return 0; }

void CPDFCSDeviceCMYKExt::cmyk_calc(unsigned short* node, int* frac, int* out) {
  cmyk_grid::tetrahedron(node, frac, out);
}
