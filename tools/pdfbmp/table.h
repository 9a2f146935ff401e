// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "tools/pdfbmp/chosen_images.h"

/// The images of a file as a table for people, a line an image, columns aligned.
std::string image_table(const ChosenImages& chosen);
