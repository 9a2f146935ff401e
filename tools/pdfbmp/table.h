// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "tools/pdfbmp/chosen_images.h"

/// The images of a file as a table for people, a line an image, columns aligned. Where it would be
/// wider than `width` (0: any), it becomes as narrow as it can.
std::string image_table(const ChosenImages& chosen, std::size_t width);
