// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/cs/rows.h"

// Each writes the conversions that it has vector forms of over the entries of `rows`.
void overlay_sse41(CPDFRows& rows);
void overlay_avx2(CPDFRows& rows);
void overlay_avx512(CPDFRows& rows);
