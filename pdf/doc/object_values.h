// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <qpdf/QPDFObjectHandle.hh>
#include <string_view>

#include "pdf/obj/object.h"

namespace pdfbmp {

/// A PDF real as fixed point, rounded to the nearest from its text, halves away from zero; what
/// lies beyond the range is its end. Text that is no number gives 0.
std::int64_t fixed_from_text(std::string_view text);

/// The integer nearest to `value` that 32 bits hold.
int int_from(long long value);

/// Fills `out` with the object itself: references inside it stay references. Containers nested
/// more than 64 deep come empty, and what is behind the first 8,192 entries of all containers
/// together stays away: no image needs as many. A stream gets its dictionary and, as its location,
/// the object number in the low half of word 1 and the generation in the high half; that of a JPEG
/// 2000 image says 8 bits per component, as its samples are delivered, and other codecs that fix
/// the depth supply one that is absent. May throw what the parser throws.
void convert_object(QPDFObjectHandle object, CPDFObj& out);

/// The same for an entry of a container: a reference stays one.
void convert_entry(QPDFObjectHandle entry, CPDFObj& out);

/// The object's own number and generation as the image unit writes them.
PDF_REF ref_of(const QPDFObjectHandle& object);

/// A dictionary key as the parser spells it, with its slash.
inline const char* without_slash(const std::string& name) {
  return name.c_str() + (!name.empty() && name.front() == '/' ? 1 : 0);
}

}  // namespace pdfbmp
