// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "pdf/cs/color_space.h"
#include "tests/support/color_runs.h"
#include "tests/support/pdf_text.h"

namespace testing_support {

inline std::unique_ptr<CPDFCSBase> space_of(const std::string& text, CPDFXRefTable* xref = nullptr) {
  CPDFObjHolder entry;
  parse_pdf(text, entry);
  return std::unique_ptr<CPDFCSBase>(CPDFCSBase::parser_cs(&entry, xref));
}

}  // namespace testing_support
