// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/image/image.h"
#include "pdf/obj/object.h"
#include "pdf/obj/xref.h"

namespace pdfbmp {

/// Puts a page's default colour space (ISO 32000-1, 8.6.5.6) in the place of the device space that
/// a loaded image's ColorSpace entry names, or that is the base of its Indexed space. `spaces` are
/// the ColorSpace resources, or null. An image without such an entry, a space that cannot be made
/// and one with another number of components change nothing.
void apply_default_space(CPDFImage& image, const CPDFObj* entry, const CPDFDictionary* spaces,
                         CPDFXRefTable* xref);

}  // namespace pdfbmp
