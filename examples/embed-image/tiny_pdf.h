// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "pdf/obj/xref.h"

/// A parser just big enough to show the seams: it reads files whose objects stand in plain sight,
/// one after the other, and builds the image library's values from them. No cross-reference table,
/// no object streams, no encryption, no escapes.
class TinyPdf : public CPDFXRefTable {
 public:
  explicit TinyPdf(std::string bytes);

  /// The numbers of all objects, in the order of the file.
  const std::vector<int>& objects() const { return numbers_; }

  int get_entity(CPDFObj& out, const PDF_REF& ref) override;
  CPDFStream* make_stream(const CPDFStreamRec* rec) override;

 private:
  bool parse(std::size_t& at, CPDFObj& out, int depth);
  bool parse_dict(std::size_t& at, CPDFDictionary& dict, int depth);
  bool parse_number(std::size_t& at, CPDFObj& out);
  std::string word(std::size_t& at);
  void skip_blanks(std::size_t& at) const;

  std::string bytes_;
  std::vector<int> numbers_;
  std::vector<std::size_t> bodies_;  ///< Where the object of the same index begins.
};
