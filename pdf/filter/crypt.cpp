// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/crypt.h"

namespace pdfbmp {

std::unique_ptr<CPDFStream> make_crypt(std::unique_ptr<CPDFStream> input, const CPDFFilterSetup&) {
  return input;
}

}  // namespace pdfbmp
