// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/cs/parsed/parse_context.h"

// One maker a family, each in the file of its name; the table in parser.cpp knows their names.

/// Makes a colour space of the array [/Family ...]; a bare name comes as an array without items.
/// Null where the space cannot be made.
using CPDFCSMaker = std::unique_ptr<CPDFCSBase> (*)(const CPDFArray& array,
                                                    CPDFCSParseContext& context);

namespace pdfbmp {

std::unique_ptr<CPDFCSBase> make_indexed(const CPDFArray& array, CPDFCSParseContext& context);
std::unique_ptr<CPDFCSBase> make_cal_gray(const CPDFArray& array, CPDFCSParseContext& context);
std::unique_ptr<CPDFCSBase> make_cal_rgb(const CPDFArray& array, CPDFCSParseContext& context);
std::unique_ptr<CPDFCSBase> make_lab(const CPDFArray& array, CPDFCSParseContext& context);
std::unique_ptr<CPDFCSBase> make_icc_based(const CPDFArray& array, CPDFCSParseContext& context);
std::unique_ptr<CPDFCSBase> make_separation(const CPDFArray& array, CPDFCSParseContext& context);
std::unique_ptr<CPDFCSBase> make_device_n(const CPDFArray& array, CPDFCSParseContext& context);

/// The device space of 1, 3 or 4 components, null for other counts. DeviceCMYK goes by table while
/// one is installed.
std::unique_ptr<CPDFCSBase> make_device(int comp_count);

/// Item `i` of an array, or null where there is none.
inline const CPDFObj* item(const CPDFArray& array, int i) {
  return i < array.count ? &array.items[i] : nullptr;
}

}  // namespace pdfbmp
