// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "pdf/filter/filter.h"
#include "pdf/filter/jpx_header.h"
#include "pdf/filter/jpx_structure.h"

struct opj_image;

/// The samples of one component in a part of the image.
struct CPDFJpxPlane {
  const std::int32_t* samples = nullptr;  ///< Null where nothing of it decoded.
  std::int64_t x0 = 0, y0 = 0;            ///< Its first sample, on the component's own grid.
  std::int64_t width = 0, height = 0;
};

/// OpenJPEG, a row of tiles at a time, or several where they are small. An image of one tile is
/// decoded and held whole.
class CPDFJpxCodestream {
 public:
  /// `file_bytes`: of the data before other filters; 0 if not known.
  CPDFJpxCodestream(std::unique_ptr<CPDFStream> input, const CPDFFilterLimits& limits,
                    std::int64_t file_bytes);
  ~CPDFJpxCodestream();
  CPDFJpxCodestream(const CPDFJpxCodestream&) = delete;
  CPDFJpxCodestream& operator=(const CPDFJpxCodestream&) = delete;

  /// Reads the header alone; false where it is no image or beyond the limits.
  bool read_header();
  const CPDFJpxHeader& header() const { return header_; }

  /// Decodes the tiles that hold line `y` of the reference grid, unless they are there already.
  /// False where there is nothing of them.
  bool decode_at(std::int64_t y);

  /// A component of the tiles that were decoded last.
  CPDFJpxPlane plane(int component) const;

  /// What went wrong, in words; null where nothing did. What decoded is there nevertheless.
  const char* problem() const { return problem_[0] != '\0' ? problem_ : nullptr; }

 private:
  bool prepare();
  bool check_limits();
  bool check_records();
  std::int64_t plausible_size() const;
  std::int64_t rows_at_once(std::int64_t row) const;
  void find_end();
  void bound_parts();
  bool decode(std::int64_t from, std::int64_t to, bool cut);
  void say(const char* what, const char* detail = "");

  CPDFLoadedBytes bytes_;
  CPDFFilterLimits limits_;
  CPDFJpxHeader header_;
  std::int64_t file_bytes_;
  CPDFJpxStructure structure_;
  std::int64_t row_bytes_ = 0;   ///< Of the samples of a row of tiles.
  std::int64_t whole_size_ = 0;  ///< Bytes of the codestream up to a tile-part that breaks off.
  std::int64_t cut_row_ = -1;    ///< The row of tiles with that part; negative where there is none.
  std::int64_t last_row_ = -1;   ///< The last row that there is a tile of.
  opj_image* image_ = nullptr;
  std::int64_t band_from_ = 0, band_to_ = 0;  ///< Lines of the reference grid in `image_`.
  bool failed_ = false;                       ///< The last band did not decode.
  bool is_prepared_ = false, is_refused_ = false;
  char problem_[200] = "";
};
