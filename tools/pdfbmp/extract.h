// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "tools/pdfbmp/messages.h"
#include "tools/pdfbmp/options.h"

/// Writes the images of the files.
Outcome run_extract(const Options& options, Messages& messages);
