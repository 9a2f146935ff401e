// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "tools/encoders/fax_encoder.h"
#include "tools/encoders/jpx_encoder.h"

// Segments of JBIG2 streams (T.88) whose bitmaps are coded as T.6.

namespace encoders {

using jpx::big_endian;

inline std::string jbig2_segment(std::uint32_t number, int type, int page, const std::string& data,
                                 const std::string& reference = "") {
  return big_endian(number, 4) + static_cast<char>(type) +
         static_cast<char>(reference.size() << 5) + reference + static_cast<char>(page) +
         big_endian(static_cast<std::uint32_t>(data.size()), 4) + data;
}

inline std::string jbig2_page(std::size_t columns, std::size_t rows) {
  return jbig2_segment(1, 48, 1,
                       big_endian(static_cast<std::uint32_t>(columns), 4) +
                           big_endian(static_cast<std::uint32_t>(rows), 4) + std::string(11, '\0'));
}

/// Where a bitmap stands on its page.
inline std::string jbig2_region(std::size_t columns, std::size_t rows, std::size_t y) {
  return big_endian(static_cast<std::uint32_t>(columns), 4) +
         big_endian(static_cast<std::uint32_t>(rows), 4) + big_endian(0, 4) +
         big_endian(static_cast<std::uint32_t>(y), 4) + '\0';
}

/// Rows that stand from row `y` of the page on.
inline std::string jbig2_generic(std::uint32_t number, const FaxRows& rows, std::size_t y) {
  return jbig2_segment(
      number, 38, 1, jbig2_region(rows[0].size(), rows.size(), y) + '\1' + encode_fax(rows, {-1}));
}

}  // namespace encoders
