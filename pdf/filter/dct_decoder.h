// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "pdf/filter/filter.h"
#include "pdf/filter/input.h"

/// libjpeg, row by row. Its way of failing, a jump out of the call, ends inside this class.
class CPDFJpegDecoder {
 public:
  /// `height` replaces that of a frame header which leaves it open (0).
  CPDFJpegDecoder(std::unique_ptr<CPDFStream> input, int height);
  ~CPDFJpegDecoder();
  CPDFJpegDecoder(const CPDFJpegDecoder&) = delete;
  CPDFJpegDecoder& operator=(const CPDFJpegDecoder&) = delete;

  /// Reads up to the first scan, and all of the data where it has several scans. `color_transform`
  /// is the parameter of that name, negative where it is absent; `file_bytes` those of the data
  /// before other filters, 0 if not known. False where there is no picture.
  bool start(int color_transform, const CPDFFilterLimits& limits, std::int64_t file_bytes);

  // Known once started.
  int width() const;
  int height() const;
  int components() const;

  /// Decodes the next row: width() * components() bytes. False at the end, and for the first row
  /// that the decoder had to make up, wholly or in part, and every row after it.
  bool next_row(unsigned char* dst);

  /// Data in several scans was broken or incomplete: no row is as fine as it should be.
  bool coarse() const;

  /// Why start() or next_row() failed, in words; null where they did not, or at the end.
  const char* problem() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};
