// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

/// Stands for bytes that are no UTF-8: U+FFFD.
inline constexpr std::string_view replacement_character = "\xEF\xBF\xBD";

/// The length of the well-formed UTF-8 character at the start of `text` (Unicode, table 3-7), or 0.
std::size_t utf8_length(std::string_view text);
