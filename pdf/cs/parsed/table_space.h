// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "pdf/cs/parsed/parsed_space.h"

/// A colour space of one component as the table of its 256 colours: CalGray, gray ICCBased,
/// Separation, DeviceN of one colorant, and the ground of Indexed.
class CPDFCSTable : public CPDFCSParsed {
 public:
  using Colors = std::array<_KXRGBA, 256>;

  CPDFCSTable(int family_code, const Colors& colors, CPDFCSRange range = {})
      : CPDFCSParsed(family_code, 1), colors_(colors), range_(range) {}

  /// Linear between the table's colours.
  void rgb_of(const double* components, _KXRGBA& rgba) const override;
  CPDFCSRange range_of(int component) const override;
  void get_default_color(PDF_COLOR& color) override;

 protected:
  void convert(_KXRGBA* dst, const unsigned char* src, int pixels) const override;

 private:
  Colors colors_;
  CPDFCSRange range_;
};
