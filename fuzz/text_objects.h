// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "pdf/obj/xref.h"

/// Objects that stand in the input as text, the parts between its form feeds: part 0 is the value
/// to be tried, part N what `N 0 R` leads to. A part may have ` stream` and bytes behind its
/// dictionary, which are decoded through the filters named there.
class TextObjects : public CPDFXRefTable {
 public:
  explicit TextObjects(std::string_view input);
  ~TextObjects() override;
  int get_entity(CPDFObj& out, const PDF_REF& ref) override;
  CPDFStream* make_stream(const CPDFStreamRec* record) override;

 private:
  struct Parser;
  std::unique_ptr<Parser> parser_;
  std::vector<std::string> parts_;
};
