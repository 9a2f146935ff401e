// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

/// Marks what the shared document library exports: the public headers and nothing else.
#define PDFBMP_API __attribute__((visibility("default")))
