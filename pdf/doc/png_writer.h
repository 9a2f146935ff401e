// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/doc/raster.h"

/// Writes a picture as PNG (ISO/IEC 15948), in memory that does not grow with the picture, its
/// width included. Every pixel format is kept as it is: gray at 1 or 8 bits, palettes with their
/// own depth, alpha where the format has it. The file says that its colours are sRGB, and tells
/// the resolution where it is known.
class PDFBMP_API CPDFPngWriter final : public CPDFRasterWriter {
 public:
  /// `sink` must outlive the writer.
  explicit CPDFPngWriter(CPDFByteSink& sink);
  ~CPDFPngWriter() override;

  /// False where the size is below 1, the palette empty or too long for its bits, memory failed, or
  /// the sink takes no more.
  bool begin(const CPDFRasterInfo& info) override;
  bool write_row(const unsigned char* row) override;
  bool finish() override;

 private:
  struct Encoder;

  bool write_header(const CPDFRasterInfo& info);
  bool append(const unsigned char* bytes, std::size_t n, bool subtract);
  bool deflate_filtered();
  bool write_data_chunk();

  CPDFByteSink& sink_;
  std::unique_ptr<Encoder> encoder_;  ///< Null outside begin() ... finish().
  std::size_t row_bytes_ = 0;
  std::size_t filter_distance_ = 0;  ///< Bytes a pixel under the Sub filter, 0 for no filter.
};
