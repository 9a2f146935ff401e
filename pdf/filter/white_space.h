// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

namespace pdfbmp {

/// The white space of ISO 32000-2, table 1, which the text filters pass over.
constexpr bool is_white_space(int c) {
  return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '\f' || c == '\0';
}

}  // namespace pdfbmp
