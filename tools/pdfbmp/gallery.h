// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "tools/pdfbmp/messages.h"
#include "tools/pdfbmp/options.h"

/// pdfbmp gallery
Outcome run_gallery(const Options& options, Messages& messages);
