// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "pdf/filter/jpx_header.h"

/// How finely the tiles of a JPEG 2000 image are divided beneath their components (ISO/IEC 15444-1,
/// annex B): for each component the most that any coding style makes of a tile.
class CPDFJpxStructure {
 public:
  /// Adds the coding style of a COD or COC marker, which stands at `at` in the data.
  void add(CPDFLoadedBytes& bytes, std::int64_t at, const CPDFJpxHeader& header);

  // Of one tile, more or less; infinite where there are too many styles to be added.
  double precincts() const;
  double code_blocks() const;
  double packets() const { return precincts() * layers_; }  ///< One of a precinct for each layer.

 private:
  struct Parts {
    double precincts = 0, code_blocks = 0;
  };
  std::vector<Parts> components_;
  std::int64_t added_ = 0;
  double layers_ = 1;
};
