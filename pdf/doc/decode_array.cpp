// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/decode_array.h"

#include <algorithm>

#include "pdf/cs/parsed/families.h"
#include "pdf/cs/parsed/parsed_space.h"
#include "pdf/obj/access.h"
#include "pdf/obj/fixed.h"

namespace {

using Range = CPDFSampleLayout::Range;

/// Where a component's values lie on the scale 0..255: of Indexed they are that scale.
CPDFCSRange scale_of(const CPDFCSBase* cs, int component) {
  if (cs == nullptr) return {0, 1};
  if (cs->family == PDF_CS_INDEXED) return {0, 255};
  return pdfbmp::range_of(*cs, component);
}

/// The Decode that applies without an array. Of Indexed a sample is the index.
Range default_of(const CPDFCSBase* cs, int bpc) {
  if (cs != nullptr && cs->family == PDF_CS_INDEXED) return {0, (1 << bpc) - 1.0};
  return {0, 255};
}

double on_scale(double value, const CPDFCSRange& scale) {
  return scale.high > scale.low ? (value - scale.low) / (scale.high - scale.low) * 255 : 0;
}

}  // namespace

std::vector<Range> pdfbmp::read_decode(const CPDFDictionary* dict, CPDFXRefTable* xref,
                                       const CPDFCSBase* cs, int bpc) {
  const int components = cs != nullptr ? cs->comp_count : 1;
  std::vector<Range> decode(static_cast<std::size_t>(components), default_of(cs, bpc));
  const CPDFObj* entry = find_key(dict, CPDFDictionary::sm_tag_decode);
  if (entry == nullptr) entry = find_key(dict, "D");
  CPDFObjHolder resolved;
  const CPDFArray* array = entry != nullptr ? get_array_value(entry, xref, resolved) : nullptr;
  if (array == nullptr) return bpc == 8 || decode[0].high == 255 ? std::vector<Range>() : decode;

  const auto number = [&](int i) {
    return static_cast<double>(get_fixed_value(&array->items[i], xref)) / fixed_one;
  };
  for (int i = 0; i < components && 2 * i + 1 < array->count; ++i) {
    const CPDFCSRange scale = scale_of(cs, i);
    decode[static_cast<std::size_t>(i)] = {on_scale(number(2 * i), scale),
                                           on_scale(number(2 * i + 1), scale)};
  }
  return decode;
}
