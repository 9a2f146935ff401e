// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "pdf/cs/color_space.h"
#include "pdf/obj/stream.h"

/// What the samples of an image are and what becomes of them.
struct CPDFSampleLayout {
  int width = 0;
  int height = 0;
  int bpc = 8;         ///< 1 to 16.
  int components = 1;  ///< 1 to 16.

  /// For each component the values that its lowest and its highest sample stand for, on the scale
  /// 0..255 (of Indexed the index itself). Empty: 0 and 255.
  struct Range {
    double low, high;
  };
  std::vector<Range> decode;

  /// A colour key in raw samples, before Decode (ISO 32000-1, 8.9.6.4): a pixel whose components
  /// all lie within their closed ranges is transparent.
  bool has_key = false;
  PDF_COLOR key_min = {};
  PDF_COLOR key_max = {};

  std::int64_t row_bytes() const;  ///< Of the stream's rows.

  /// Whether samples reach the colour space as they are: bytes, and no Decode to go through.
  bool is_plain() const;
};

/// An image's samples as rows of bytes, from the top: every depth brought to its full range and
/// through Decode, `components` bytes a pixel.
class CPDFSampleRows {
 public:
  /// Reads `stream`, which must outlive this. Null where the layout is out of range or memory
  /// failed.
  static std::unique_ptr<CPDFSampleRows> make(CPDFStream& stream, CPDFSampleLayout layout);

  const CPDFSampleLayout& layout() const { return layout_; }

  /// Writes the next row's `width * components` bytes. False, with zeros written, where the row
  /// cannot be read; of one that arrives short the missing samples are 0.
  bool read(unsigned char* dst);

  /// Opacity by the colour key of the row last read, `width` bytes of 0 or 255; null without a key.
  const unsigned char* key_opacity() const { return layout_.has_key ? key_.get() : nullptr; }

 private:
  using Bytes = std::unique_ptr<unsigned char[]>;

  explicit CPDFSampleRows(CPDFStream& stream, CPDFSampleLayout layout)
      : stream_(stream), layout_(std::move(layout)) {}
  bool prepare();
  void fill_tables();
  const unsigned char* table_of(int component) const;
  void widen(unsigned char* dst) const;
  void compare_key();

  CPDFStream& stream_;
  CPDFSampleLayout layout_;
  Bytes row_;     ///< The stream's row; null where it is read straight to its place.
  Bytes tables_;  ///< For each component (or once for all) the byte of every sample value.
  Bytes key_;
  bool one_table_ = true;
};
