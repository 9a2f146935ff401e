// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "pdf/doc/document.h"
#include "tools/pdfbmp/options.h"

/// Opens one input file; where that fails, null, with the reason in `error`.
/// Standard input is copied to a temporary file first.
std::unique_ptr<CPDFDocument> open_input(const std::string& file, const Options& options,
                                         Outcome& outcome, std::string& error);
