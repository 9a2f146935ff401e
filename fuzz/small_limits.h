// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/filter/filter.h"

/// Limits under which a run stays short.
inline CPDFFilterLimits small_limits() {
  CPDFFilterLimits limits;
  limits.max_pixels = 1 << 18;
  limits.max_codec_bytes = limits.max_stage_bytes = 1 << 24;
  limits.max_scans = 10;
  // A limit of time would make two runs differ.
  limits.max_search_seconds = 1000;
  return limits;
}
