// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

// Plain encoders for the filters of PDF, slow and short: they make the sample file and what the
// tests of the filters decode.

namespace encoders {

/// Bytes of bits that are written as characters, filled up with zeros.
std::string pack_bits(const std::string& bits);

std::string encode_ascii85(const std::string& bytes);
std::string encode_ascii_hex(const std::string& bytes);
std::string encode_run_length(const std::string& bytes);

/// LZW with codes of 9 to 12 bits. A `full_table` one is not cleared when no more codes are free;
/// one without `markers` has no clear code at its begin and no end of data.
std::string encode_lzw(const std::string& bytes, int early_change = 1, bool full_table = false,
                       bool markers = true);

std::string deflate(const std::string& bytes, bool zlib_wrapper = true);
std::string png_predict(const std::string& rows, int row_bytes, int step, int type);
std::string tiff_predict(const std::string& rows, int row_bytes, int colors, int bits);

}  // namespace encoders
