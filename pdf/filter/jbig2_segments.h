// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

/// One segment of an embedded JBIG2 stream (T.88, 7.2).
struct Jbig2Segment {
  std::size_t bytes = 0;  ///< Header and data; what there is of it, where it is cut.
  bool whole = false;
  int type = -1;
  std::uint32_t number = 0;
  std::uint32_t page = 0;  ///< That it belongs to; 0 for what every page may use.
  const unsigned char* data = nullptr;
  std::size_t data_bytes = 0;

  bool is_symbol_dictionary() const { return type == 0; }
  bool is_pattern_dictionary() const { return type == 16; }
  // A region is kept for later ones, drawn on the page, or that without loss.
  bool is_text_region() const { return type == 4 || type == 6 || type == 7; }
  bool is_halftone_region() const { return type == 20 || type == 22 || type == 23; }
  bool is_generic_region() const { return type == 36 || type == 38 || type == 39; }
  bool is_refinement_region() const { return type == 40 || type == 42 || type == 43; }
  bool is_region() const {
    return is_text_region() || is_halftone_region() || is_generic_region() ||
           is_refinement_region();
  }
  bool is_drawn_region() const { return is_region() && type % 4 != 0; }
  bool is_page() const { return type == 48; }
  bool is_end_of_page() const { return type == 49; }
  bool is_end_of_file() const { return type == 51; }
};

/// The segment at the front of `size` (at least 1) bytes.
Jbig2Segment read_segment(const unsigned char* bytes, std::size_t size);
