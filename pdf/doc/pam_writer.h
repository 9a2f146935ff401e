// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "pdf/doc/raster.h"

/// Writes a picture in one of the uncompressed formats of the Netpbm family. Palettes are written
/// as the colours they stand for, as gray where all of them are gray.
class PDFBMP_API CPDFPamWriter final : public CPDFRasterWriter {
 public:
  enum class Dialect {
    pam,  ///< PAM (P7) whatever the picture holds.
    pnm,  ///< PBM (P4), PGM (P5) or PPM (P6) by content; PAM where there is alpha.
  };

  /// `sink` must outlive the writer.
  CPDFPamWriter(CPDFByteSink& sink, Dialect dialect);

  /// The usual file name suffix for a picture: "pam", "pbm", "pgm" or "ppm".
  static const char* suffix_of(const CPDFRasterInfo& info, Dialect dialect);

  /// False where the size is below 1, memory failed, or the sink takes no more.
  bool begin(const CPDFRasterInfo& info) override;
  bool write_row(const unsigned char* row) override;
  bool finish() override;

 private:
  CPDFByteSink& sink_;
  Dialect dialect_;
  CPDFRasterInfo info_;
  bool gray_palette_ = false;
  std::vector<unsigned char> piece_;  ///< Converted pixels on their way to the sink.
};
