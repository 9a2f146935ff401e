// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/describe.h"

#include <algorithm>
#include <cstring>

#include "pdf/filter/filter_chain.h"
#include "pdf/obj/access.h"

namespace {

struct Family {
  const char* name;
  const char* shorter;  ///< Of inline images (ISO 32000-1, table 94).
  int components;       ///< 0 where the array tells.
};

constexpr Family families[] = {
    {"DeviceGray", "G", 1},  {"DeviceRGB", "RGB", 3},    {"DeviceCMYK", "CMYK", 4},
    {"CalGray", nullptr, 1}, {"CalRGB", nullptr, 3},     {"CalCMYK", nullptr, 4},
    {"Lab", nullptr, 3},     {"ICCBased", nullptr, 0},   {"Indexed", "I", 1},
    {"Pattern", nullptr, 0}, {"Separation", nullptr, 1}, {"DeviceN", nullptr, 0},
};

const Family* find_family(const char* name) {
  for (const Family& family : families) {
    if (std::strcmp(name, family.name) == 0) return &family;
    if (family.shorter != nullptr && std::strcmp(name, family.shorter) == 0) return &family;
  }
  return nullptr;
}

/// Components that the second item of a colour space array tells: N of a profile's stream, or the
/// number of names.
int count_components(const CPDFObj& item, CPDFXRefTable* xref) {
  CPDFObjHolder value;
  resolve_copy(&item, xref, value);
  if (value.array() != nullptr) return value.array()->count;
  if (value.stream() == nullptr) return 0;
  const CPDFObj* n = find_key(&value.stream()->dict, "N");
  return n != nullptr ? std::clamp(get_int_value(n, xref), 0, 32) : 0;
}

pdfbmp::ColorSpaceName name_space(const CPDFObj& entry, CPDFXRefTable* xref,
                                  const CPDFDictionary* named, int depth) {
  pdfbmp::ColorSpaceName result;
  CPDFObjHolder value;
  resolve_copy(&entry, xref, value);
  const CPDFArray* array = value.array();
  CPDFObjHolder head;
  if (array != nullptr && array->count > 0) {
    resolve_copy(&array->items[0], xref, head);
  } else {
    head.copy_from(&value);
  }
  if (head.name() == nullptr) return result;
  const Family* family = find_family(head.name());
  if (family == nullptr) {
    const CPDFObj* resource = find_key(named, head.name());
    if (resource != nullptr && depth > 0) return name_space(*resource, xref, named, depth - 1);
    result.family = pdfbmp::kept_name(head.name());
    return result;
  }
  result.family = family->name;
  result.components = family->components;
  if (array == nullptr || array->count < 2) return result;
  const CPDFObj& second = array->items[1];
  if (std::strcmp(family->name, "Indexed") == 0) {
    if (depth > 0) result.base = name_space(second, xref, named, depth - 1).family;
  } else if (family->components == 0) {
    result.components = count_components(second, xref);
  }
  return result;
}

}  // namespace

namespace pdfbmp {

ColorSpaceName name_color_space(const CPDFObj& entry, CPDFXRefTable* xref,
                                const CPDFDictionary* named) {
  return name_space(entry, xref, named, 4);
}

const CPDFObj* image_entry(const CPDFDictionary& dict, const char* full, const char* shorter) {
  const CPDFObj* entry = find_key(&dict, full);
  return entry != nullptr || shorter == nullptr ? entry : find_key(&dict, shorter);
}

void describe_image(const CPDFDictionary& dict, CPDFXRefTable* xref, const CPDFDictionary* named,
                    CPDFFoundImage& found) {
  // The abbreviations mean something else, or nothing, in the dictionary of a stream.
  const bool is_inline = found.kind == CPDFImageKind::inline_image;
  const auto entry_of = [&](const char* full, const char* shorter) {
    return is_inline ? image_entry(dict, shorter, full) : find_key(&dict, full);
  };
  const auto int_of = [&](const char* full, const char* shorter) {
    const CPDFObj* entry = entry_of(full, shorter);
    return entry != nullptr ? get_int_value(entry, xref) : 0;
  };
  const auto flag_of = [&](const char* full, const char* shorter) {
    const CPDFObj* entry = entry_of(full, shorter);
    return entry != nullptr && get_bool_value(entry, xref) != 0;
  };
  found.width = int_of(CPDFDictionary::sm_tag_width, "W");
  found.height = int_of(CPDFDictionary::sm_tag_height, "H");
  found.bpc = int_of(CPDFDictionary::sm_tag_bpc, "BPC");
  found.image_mask = flag_of("ImageMask", "IM");
  found.interpolate = flag_of("Interpolate", "I");
  found.filters = filter_names(dict, xref);
  if (const CPDFObj* entry = entry_of(CPDFDictionary::sm_tag_cs, "CS")) {
    const ColorSpaceName name = name_color_space(*entry, xref, named);
    found.colorspace = name.family;
    found.base = name.base;
    found.components = name.components;
  }
  if (found.image_mask) {
    found.bpc = 1;
    found.components = 1;
    if (found.kind == CPDFImageKind::image) found.kind = CPDFImageKind::stencil;
  } else if (found.bpc == 0) {
    found.bpc = 8;
  }
}

}  // namespace pdfbmp
