// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/obj/access.h"

#include <cstring>

#include "pdf/obj/fixed.h"
#include "pdf/obj/xref.h"

namespace {

/// Reads `entry` with `read` where it is of the kind that `is_kind` tells, else what it resolves
/// to; 0 where that is of another kind too.
template <class IsKind, class Read>
auto read_resolved(const CPDFObj* entry, CPDFXRefTable* xref, IsKind is_kind, Read read)
    -> decltype(read(*entry)) {
  if (is_kind(*entry)) return read(*entry);
  CPDFObjHolder temporary;
  resolve_copy(entry, xref, temporary);
  return is_kind(temporary) ? read(temporary) : 0;
}

bool is_number(const CPDFObj& obj) { return obj.is_number(); }
bool is_boolean(const CPDFObj& obj) { return obj.type == PDF_BOOLEAN; }

}  // namespace

const CPDFObj* find_key(const CPDFDictionary* dict, const char* key) {
  if (dict == nullptr) return nullptr;
  int lo = 0;
  int hi = dict->count - 1;
  while (lo <= hi) {
    const int mid = lo + (hi - lo) / 2;
    const CPDFObj* item = dict->items[mid];
    if (item == nullptr) return nullptr;
    const int order = std::strcmp(key, CPDFDictionary::key_of(item));
    if (order == 0) return item;
    if (order < 0) {
      hi = mid - 1;
    } else {
      lo = mid + 1;
    }
  }
  return nullptr;
}

void resolve_copy(const CPDFObj* entry, CPDFXRefTable* xref, CPDFObj& temporary) {
  temporary.free();
  if (entry != nullptr && entry->type == PDF_REFERENCE && xref != nullptr) {
    xref->get_entity(temporary, entry->ref());
  } else {
    temporary.copy_from(entry);
  }
}

int get_int_value(const CPDFObj* entry, CPDFXRefTable* xref) {
  return read_resolved(entry, xref, is_number, [](const CPDFObj& obj) {
    return obj.type == PDF_REAL ? fixed_to_int(obj.as_fixed()) : obj.as_int();
  });
}

int get_bool_value(const CPDFObj* entry, CPDFXRefTable* xref) {
  return read_resolved(entry, xref, is_boolean, [](const CPDFObj& obj) { return obj.as_int(); });
}

std::int64_t get_fixed_value(const CPDFObj* entry, CPDFXRefTable* xref) {
  return read_resolved(entry, xref, is_number, [](const CPDFObj& obj) {
    return obj.type == PDF_REAL ? obj.as_fixed() : int_to_fixed(obj.as_int());
  });
}

CPDFArray* get_array_value(const CPDFObj* entry, CPDFXRefTable* xref, CPDFObj& temporary) {
  resolve_copy(entry, xref, temporary);
  return temporary.array();
}
