// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "pdf/obj/object.h"

class CPDFXRefTable;

// How dictionary entries are found and read. An `xref` may be null: references then stay
// unresolved and read as nothing. `entry` is never null but for resolve_copy, where null gives the
// empty value.

/// The entry of `key`, or null where it is absent. Binary search: relies on the sorted order.
const CPDFObj* find_key(const CPDFDictionary* dict, const char* key);

/// Fills `temporary` (freed first; the caller frees it afterwards) with what `entry` denotes: the
/// object behind a reference where `xref` is given, otherwise a deep copy of the entry itself.
void resolve_copy(const CPDFObj* entry, CPDFXRefTable* xref, CPDFObj& temporary);

/// An integer, or a real rounded as by fixed_to_int; 0 for what resolves to no number.
int get_int_value(const CPDFObj* entry, CPDFXRefTable* xref);

/// A boolean's value; 0 for what resolves to no boolean, numbers included.
int get_bool_value(const CPDFObj* entry, CPDFXRefTable* xref);

/// A number as fixed point; 0 for what resolves to no number.
std::int64_t get_fixed_value(const CPDFObj* entry, CPDFXRefTable* xref);

/// Resolves into `temporary` and returns the array inside it, good until `temporary` is freed;
/// null for what is no array.
CPDFArray* get_array_value(const CPDFObj* entry, CPDFXRefTable* xref, CPDFObj& temporary);
