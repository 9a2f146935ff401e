// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// An ICC output profile of a press with dull inks on grayish paper, always of the same bytes.
/// Empty where Little CMS fails.
std::string make_press_profile();
