// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "pdf/doc/found_image.h"
#include "tools/pdfbmp/json_writer.h"

/// "image", "stencil", "mask", "smask" or "inline".
const char* kind_name(CPDFImageKind kind);

/// Adds all that is known of an image before it is decoded.
void add_facts(JsonObject& json, const CPDFFoundImage& found);

/// The line that ends a file where there are several. A null `error` is none.
std::string summary_line(const std::string& pdf, std::size_t images, std::size_t failed,
                         const std::string* error);

/// "page 3, object 12", for messages.
std::string place_of(const CPDFFoundImage& found, int number);
