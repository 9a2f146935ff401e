// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <string>

#include "pdf/cs/color_space.h"
#include "pdf/obj/stream.h"
#include "pdf/obj/xref.h"

/// The seams that the image library leaves open, for a program that links it alone. Null answers
/// nothing.
struct ImageSeams {
  std::function<CPDFCSBase*(const CPDFObj*, CPDFXRefTable*)> parser_cs;
  std::function<CPDFStream*(unsigned char*, int, const char*, const CPDFDictionary*)> inline_stream;
};
ImageSeams& image_seams();

/// A cross-reference table with objects in the syntax of read_object(), by number.
class TestTable : public CPDFXRefTable {
 public:
  int get_entity(CPDFObj& out, const PDF_REF& ref) override;
  CPDFStream* make_stream(const CPDFStreamRec* rec) override { return make ? make(rec) : nullptr; }

  std::map<int, std::string> objects;
  std::function<CPDFStream*(const CPDFStreamRec*)> make;
};

/// Reads a value in the syntax of PDF: true, 12, -0.5, /Name, (string), [...], <<...>>, `7 R` for a
/// reference; `stream 7 <<...>>` is a stream whose record's identity is 7, `null` the empty value.
/// Returns where it stopped.
const char* read_object(CPDFObj& out, const char* text);
