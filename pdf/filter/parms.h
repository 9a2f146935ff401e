// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

class CPDFDictionary;
class CPDFXRefTable;

namespace pdfbmp {

// Entries of a parameter dictionary, which may be null. What is absent, or of another kind than
// asked for, gives `otherwise`.

int int_parm(const CPDFDictionary* parms, CPDFXRefTable* xref, const char* key, int otherwise);
bool bool_parm(const CPDFDictionary* parms, CPDFXRefTable* xref, const char* key, bool otherwise);

}  // namespace pdfbmp
