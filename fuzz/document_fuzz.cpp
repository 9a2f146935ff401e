// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// A whole file: opened, walked, and its pictures read.
#include "fuzz/document_parts.h"
#include "fuzz/target.h"

std::string run_target(FuzzInput in, bool) { return read_document(std::string(in.text())); }
