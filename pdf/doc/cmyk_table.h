// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "kx/api.h"

// The lookup table of DeviceCMYK (pdf/cs/device_cmyk_ext.h), one for the process. It must not
// change while anything converts: install it, or take it away, before the first image is loaded or
// after the last one is gone, with no other thread inside the library.

namespace pdfbmp {

/// Builds the table from an ICC profile of CMYK data, relative colorimetric with black point
/// compensation to sRGB, and installs it: DeviceCMYK of images loaded from now on goes by it. False
/// where the profile cannot be used; `error` then says why, in words, and an earlier table stays.
/// The bytes are needed only during the call, which takes a fraction of a second.
PDFBMP_API bool install_cmyk_table(const void* icc_profile, std::size_t bytes, std::string& error);

/// Takes the table away: DeviceCMYK goes by its formula again.
PDFBMP_API void remove_cmyk_table();

}  // namespace pdfbmp
