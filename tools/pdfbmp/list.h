// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "tools/pdfbmp/messages.h"
#include "tools/pdfbmp/options.h"

/// Shows the images of the files on standard output.
Outcome run_list(const Options& options, Messages& messages);
