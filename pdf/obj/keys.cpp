// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/obj/object.h"

const char* CPDFDictionary::sm_tag_width = "Width";
const char* CPDFDictionary::sm_tag_height = "Height";
const char* CPDFDictionary::sm_tag_bpc = "BitsPerComponent";
const char* CPDFDictionary::sm_tag_cs = "ColorSpace";
const char* CPDFDictionary::sm_tag_decode = "Decode";
const char* CPDFDictionary::sm_tag_filter = "Filter";
