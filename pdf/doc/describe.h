// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "pdf/doc/found_image.h"
#include "pdf/obj/object.h"
#include "pdf/obj/xref.h"

namespace pdfbmp {

/// What a ColorSpace entry says of itself, without making the space.
struct ColorSpaceName {
  std::string family;  ///< Full name; empty where the entry is none.
  std::string base;    ///< Of Indexed: the family of its base.
  int components = 0;
};

/// Reads a ColorSpace entry, abbreviated names too. `named` are the ColorSpace resources in which
/// other names are looked up; it may be null.
ColorSpaceName name_color_space(const CPDFObj& entry, CPDFXRefTable* xref,
                                const CPDFDictionary* named);

/// The entry of an image dictionary under its full key or, for inline images, the abbreviated one;
/// null where it has neither.
const CPDFObj* image_entry(const CPDFDictionary& dict, const char* full, const char* shorter);

/// Fills what a dictionary tells: size, bits, colours, filters, flags.
void describe_image(const CPDFDictionary& dict, CPDFXRefTable* xref, const CPDFDictionary* named,
                    CPDFFoundImage& found);

}  // namespace pdfbmp
