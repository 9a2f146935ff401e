// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/doc/native_file.h"

namespace pdfbmp {

// What each codec's file has around the data, which is loaded already. `setup` is that of the
// codec's filter. False where the data does not make such a file.

bool wrap_jpeg(const CPDFFilterSetup& setup, const CPDFFoundImage& found, CPDFNativeFile& file);
bool wrap_jpx(const CPDFFilterSetup& setup, const CPDFFoundImage& found, CPDFNativeFile& file);
bool wrap_jbig2(const CPDFFilterSetup& setup, const CPDFFoundImage& found, CPDFNativeFile& file);
bool wrap_ccitt(const CPDFFilterSetup& setup, const CPDFFoundImage& found, CPDFNativeFile& file);

}  // namespace pdfbmp
