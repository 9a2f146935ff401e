// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "pdf/doc/found_image.h"

/// The images of a file as a table for people, a line an image, columns aligned.
std::string image_table(const std::vector<CPDFFoundImage>& images);
