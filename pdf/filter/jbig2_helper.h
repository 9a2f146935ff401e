// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "kx/api.h"

namespace pdfbmp {

// The program that decodes JBIG2, `pdfbmp-jbig2`, is started once for each image. These may be
// called on any thread, and count for images that are read afterwards.

/// Says where the helper lies.
PDFBMP_API void set_jbig2_helper(const std::string& path);

/// No helper is started any more: JBIG2 images do not decode.
PDFBMP_API void switch_off_jbig2();

/// The helper's path: as set, or where it is found beside the running program, or in the libexec
/// folder that was chosen when the library was built. Empty where there is none.
PDFBMP_API std::string jbig2_helper();

}  // namespace pdfbmp
