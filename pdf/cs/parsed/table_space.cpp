// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/parsed/table_space.h"

#include <algorithm>
#include <cmath>

#include "pdf/cs/parsed/families.h"

void CPDFCSTable::rgb_of(const double* components, _KXRGBA& rgba) const {
  const double place = range_.byte_of(components[0]);
  const int below = std::min(static_cast<int>(place), 254);
  const double part = place - below;
  const _KXRGBA& a = colors_[static_cast<std::size_t>(below)];
  const _KXRGBA& b = colors_[static_cast<std::size_t>(below) + 1];
  const auto mix = [part](int from, int to) {
    return static_cast<unsigned char>(std::lround(from + (to - from) * part));
  };
  rgba = {mix(a.b, b.b), mix(a.g, b.g), mix(a.r, b.r), 255};
}

CPDFCSRange CPDFCSTable::range_of(int) const { return range_; }

void CPDFCSTable::get_default_color(PDF_COLOR& color) {
  CPDFCSParsed::get_default_color(color);
  if (family == PDF_CS_SEPARATION || family == PDF_CS_DEVICE_N) color.val[0] = 255;
}

void CPDFCSTable::convert(_KXRGBA* dst, const unsigned char* src, int pixels) const {
  for (int i = 0; i < pixels; ++i) dst[i] = colors_[src[i]];
}
