// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/default_spaces.h"

#include <cstring>
#include <memory>

#include "pdf/cs/color_space.h"
#include "pdf/obj/access.h"

namespace {

struct Default {
  const char* device;
  const char* shorter;
  const char* key;
};

constexpr Default defaults[] = {
    {"DeviceGray", "G", "DefaultGray"},
    {"DeviceRGB", "RGB", "DefaultRGB"},
    {"DeviceCMYK", "CMYK", "DefaultCMYK"},
};

/// The resource that stands in for a device space, given by its name or an array of just that;
/// null where there is none.
const CPDFObj* find_default(const CPDFObj& entry, const CPDFDictionary* spaces,
                            CPDFXRefTable* xref) {
  CPDFObjHolder value;
  resolve_copy(&entry, xref, value);
  const CPDFObj* head = &value;
  if (value.array() != nullptr && value.array()->count == 1) head = &value.array()->items[0];
  if (head->name() == nullptr) return nullptr;
  for (const Default& row : defaults) {
    const bool is_it =
        std::strcmp(head->name(), row.device) == 0 || std::strcmp(head->name(), row.shorter) == 0;
    if (is_it) return find_key(spaces, row.key);
  }
  return nullptr;
}

bool is_indexed(const CPDFArray* array) {
  if (array == nullptr || array->count < 2 || array->items[0].name() == nullptr) return false;
  const char* name = array->items[0].name();
  return std::strcmp(name, "Indexed") == 0 || std::strcmp(name, "I") == 0;
}

}  // namespace

namespace pdfbmp {

void apply_default_space(CPDFImage& image, const CPDFObj* entry, const CPDFDictionary* spaces,
                         CPDFXRefTable* xref) {
  if (entry == nullptr || spaces == nullptr || image.cs == nullptr) return;
  CPDFObjHolder wanted;
  if (const CPDFObj* direct = find_default(*entry, spaces, xref)) {
    wanted.copy_from(direct);
  } else {
    resolve_copy(entry, xref, wanted);
    if (!is_indexed(wanted.array())) return;
    const CPDFObj* base = find_default(wanted.array()->items[1], spaces, xref);
    if (base == nullptr) return;
    wanted.array()->items[1].copy_from(base);
  }
  std::unique_ptr<CPDFCSBase> space(CPDFCSBase::parser_cs(&wanted, xref));
  const bool fits = space != nullptr && space->comp_count == image.cs->comp_count &&
                    (space->family == 8) == (image.cs->family == 8);
  if (!fits) return;
  if (image.cs_borrowed == 0) delete image.cs;
  image.cs = space.release();
  image.cs_borrowed = 0;
}

}  // namespace pdfbmp
