// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "pdf/filter/ccitt_codes.h"

namespace encoders {

/// A fax picture: a character a pixel, 1 for black.
using FaxRows = std::vector<std::string>;

enum class FaxAlign { none, row, code };  ///< Nothing, each row's begin, or its code's end.

struct FaxOptions {
  int k = 0;
  bool end_of_line = false;
  FaxAlign align = FaxAlign::none;
  bool end_of_block = true;
};

/// A plain encoder after T.4 and T.6 that looks at single pixels. `row_begins`, where given, gets
/// the bit at which each row (with the code before it) begins.
std::string encode_fax(const FaxRows& rows, const FaxOptions& options,
                       std::vector<std::size_t>* row_begins = nullptr);

/// The bytes that decoding gives.
std::string pack_fax_rows(const FaxRows& rows, bool black_is_1);

}  // namespace encoders
