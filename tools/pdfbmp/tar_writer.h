// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "pdf/doc/raster.h"

/// Writes a tar stream (POSIX ustar, with pax records where a name or a size asks for them). Times
/// and owners are zero: the same content gives the same bytes.
class TarWriter {
 public:
  /// `sink` must outlive the writer.
  explicit TarWriter(CPDFByteSink& sink) : sink_(sink) {}

  /// Starts a member of `size` bytes, which follow by write().
  bool begin(const std::string& name, std::int64_t size);
  bool write(const void* bytes, std::size_t n);

  /// Fills up the member's last block.
  bool end();

  /// Ends the stream.
  bool finish();

 private:
  bool write_header(const std::string& name, std::int64_t size, char type);

  CPDFByteSink& sink_;
  std::int64_t in_block_ = 0;  ///< Bytes of the member modulo the block size.
};
