// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tests/support/image_seams.h"

ImageSeams& image_seams() {
  static ImageSeams seams;
  return seams;
}

CPDFCSBase* CPDFCSBase::parser_cs(const CPDFObj* entry, CPDFXRefTable* xref) {
  const auto& parse = image_seams().parser_cs;
  return parse ? parse(entry, xref) : nullptr;
}

CPDFStream* CPDFStream::make_inline_stream(unsigned char* data, int len, const char* filter, const CPDFDictionary* parms) {
  const auto& make = image_seams().inline_stream;
  return make ? make(data, len, filter, parms) : nullptr;
}
