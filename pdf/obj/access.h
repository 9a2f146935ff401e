// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "kx/api.h"
#include "pdf/obj/object.h"

class CPDFXRefTable;

// How dictionary entries are found and read. An `xref` may be null: references then stay
// unresolved and read as nothing. `entry` is never null but for resolve_copy, where null gives the
// empty value.

/// The entry of `key`, or null where it is absent. Binary search: relies on the sorted order.
PDFBMP_API const CPDFObj* find_key(const CPDFDictionary* dict, const char* key);

/// Fills `temporary` (freed first; the caller frees it afterwards) with what `entry` denotes: the
/// object behind a reference where `xref` is given, otherwise a deep copy of the entry itself.
PDFBMP_API void resolve_copy(const CPDFObj* entry, CPDFXRefTable* xref, CPDFObj& temporary);

/// An integer, or a real rounded as by fixed_to_int; 0 for what resolves to no number.
PDFBMP_API int get_int_value(const CPDFObj* entry, CPDFXRefTable* xref);

/// A boolean's value; 0 for what resolves to no boolean, numbers included.
PDFBMP_API int get_bool_value(const CPDFObj* entry, CPDFXRefTable* xref);

/// A number as fixed point; 0 for what resolves to no number.
PDFBMP_API std::int64_t get_fixed_value(const CPDFObj* entry, CPDFXRefTable* xref);

/// Resolves into `temporary` and returns the array inside it, good until `temporary` is freed;
/// null for what is no array.
PDFBMP_API CPDFArray* get_array_value(const CPDFObj* entry, CPDFXRefTable* xref,
                                      CPDFObj& temporary);
