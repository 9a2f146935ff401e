// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/declared_size.h"

#include <algorithm>

#include "pdf/filter/parms.h"

namespace pdfbmp {

DeclaredSize declared_size(const CPDFFilterSetup& setup) {
  const auto value = [&](const char* key, const char* shorter) {
    return std::max(
        int_parm(setup.image, setup.xref, key, int_parm(setup.image, setup.xref, shorter, 0)), 0);
  };
  return {value("Width", "W"), value("Height", "H")};
}

}  // namespace pdfbmp
