// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/obj/object.h"

class CPDFStream;

/// The seam to a PDF parser: resolves references and opens streams. An embedder with a parser of
/// its own implements this; the document library has one over its own parser. Used by one thread
/// at a time, unless the implementation says otherwise. Must not throw.
class PDFBMP_API CPDFXRefTable {
 public:
  virtual ~CPDFXRefTable() = default;

  /// Fills `out`, which is empty, with an owned copy of the object that `ref` denotes; the caller
  /// frees it. A reference that cannot be resolved leaves it empty. Nobody looks at the result;
  /// by convention it is 1 where the object was found.
  virtual int get_entity(CPDFObj& out, const PDF_REF& ref) = 0;

  /// A new stream, owned by the caller, that delivers the record's data decoded through all of its
  /// filters; null where that cannot be done. The record lives only as long as the call.
  virtual CPDFStream* make_stream(const CPDFStreamRec* rec) = 0;
};
