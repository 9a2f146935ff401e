// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// Opens `file`, finds its images and reads their pictures, raw data and bitmaps, all within small
/// limits. Checks what is told of them, and returns it.
std::string read_document(const std::string& file);
