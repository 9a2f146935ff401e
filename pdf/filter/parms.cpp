// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/parms.h"

#include "pdf/obj/access.h"
#include "pdf/obj/object.h"

namespace pdfbmp {

int int_parm(const CPDFDictionary* parms, CPDFXRefTable* xref, const char* key, int otherwise) {
  const CPDFObj* entry = parms != nullptr ? find_key(parms, key) : nullptr;
  if (entry == nullptr) return otherwise;
  CPDFObjHolder value;
  resolve_copy(entry, xref, value);
  return value.is_number() ? get_int_value(&value, nullptr) : otherwise;
}

bool bool_parm(const CPDFDictionary* parms, CPDFXRefTable* xref, const char* key, bool otherwise) {
  const CPDFObj* entry = parms != nullptr ? find_key(parms, key) : nullptr;
  if (entry == nullptr) return otherwise;
  CPDFObjHolder value;
  resolve_copy(entry, xref, value);
  return value.type == PDF_BOOLEAN ? value.as_int() != 0 : otherwise;
}

}  // namespace pdfbmp
