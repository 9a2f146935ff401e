// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cmath>

#include "pdf/cs/parsed/cie.h"
#include "pdf/cs/parsed/families.h"
#include "pdf/cs/parsed/makers.h"
#include "pdf/cs/parsed/table_space.h"
#include "pdf/obj/access.h"

// [/CalGray dict], ISO 32000-1 8.6.5.2: X, Y, Z are the white point times A to the power of Gamma.
// Adapted to the white of sRGB that is a neutral gray whatever the white point; BlackPoint, which
// asks for no scaling of the colours, is not looked at.

std::unique_ptr<CPDFCSBase> pdfbmp::make_cal_gray(const CPDFArray& array,
                                                  CPDFCSParseContext& context) {
  CPDFObjHolder temporary;
  const CPDFObj* dict = context.resolve(item(array, 1), temporary);
  if (dict == nullptr || dict->dict() == nullptr) return nullptr;
  const CPDFObj* entry = find_key(dict->dict(), "Gamma");
  double gamma = entry == nullptr ? 1 : context.number(entry);
  if (!(gamma > 0)) gamma = 1;

  const SrgbEncoder encode;
  CPDFCSTable::Colors colors;
  for (std::size_t i = 0; i < colors.size(); ++i) {
    const unsigned char gray = encode(std::pow(static_cast<double>(i) / 255, gamma));
    colors[i] = {gray, gray, gray, 255};
  }
  return std::make_unique<CPDFCSTable>(PDF_CS_CAL_GRAY, colors);
}
