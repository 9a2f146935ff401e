// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "pdf/cs/color_space.h"
#include "pdf/obj/stream.h"

/// The seams that the image library leaves open, for a program that links it alone. Null answers
/// nothing.
struct ImageSeams {
  std::function<CPDFCSBase*(const CPDFObj*, CPDFXRefTable*)> parser_cs;
  std::function<CPDFStream*(unsigned char*, int, const char*, const CPDFDictionary*)> inline_stream;
};
ImageSeams& image_seams();
