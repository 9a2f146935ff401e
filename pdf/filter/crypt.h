// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/filter/filter.h"

namespace pdfbmp {

/// Crypt (ISO 32000-2, 7.4.10). Bytes come decrypted from the parser, which knows the keys and
/// which crypt filter a stream names, so that there is nothing left to do: the result is `input`.
std::unique_ptr<CPDFStream> make_crypt(std::unique_ptr<CPDFStream> input,
                                       const CPDFFilterSetup& setup);

}  // namespace pdfbmp
